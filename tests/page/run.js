#!/usr/bin/env node
// Opens the tray's page in a real browser and uses it as people do.
//
//   node tests/page/run.js BUILD [--pictures FOLDER] [WORD ...]
//
// Prints "ok NAME" or "not ok NAME" for each test; with words, only tests whose name holds one of them run.
import { resolve } from "node:path";
import { openBrowser } from "./stage.js";
import { tests } from "./tests.js";

const given = process.argv.slice(2);
const at = given.indexOf("--pictures");
const pictures = at < 0 ? null : given.splice(at, 2)[1];
const [build, ...words] = given;
if (!build) {
  console.error("usage: node tests/page/run.js BUILD [--pictures FOLDER] [WORD ...]");
  process.exit(2);
}

const chosen = Object.entries(tests).filter(([name]) => words.length === 0 || words.some((word) => name.includes(word)));
const browser = await openBrowser();
let bad = chosen.length === 0 ? 1 : 0;
for (const [name, test] of chosen) {
  try {
    await test({ build: resolve(build), browser, pictures });
    console.log(`ok page: ${name}`);
  } catch (error) {
    bad++;
    console.log(`not ok page: ${name}`);
    console.log(String(error.stack || error).replace(/^/gm, "  "));
  }
}
await browser.close();
process.exit(bad === 0 ? 0 : 1);
