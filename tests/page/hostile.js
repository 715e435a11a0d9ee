#!/usr/bin/env node
// Names that mean harm, as the real player writes them, on the real page: text and nothing but text.
// tests/page/real.py sets the scene.
//
//   node tests/page/hostile.js URL NAMES        NAMES is a JSON file: {"show", "sequence", "trigger", "missing"}
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { openBrowser, openPage, until } from "./stage.js";

const [url, file] = process.argv.slice(2);
const names = JSON.parse(readFileSync(file, "utf8"));
const browser = await openBrowser();
try {
  const page = await openPage(browser, { viewport: { width: 360, height: 760 } });
  await page.goto(url);
  const has = (id, text) => until(`#${id} has ${text.slice(0, 60)}`, () =>
    page.locator(`#${id}`).evaluate((one, wanted) => one.textContent.includes(wanted), text));
  await has("now-show", names.missing);
  await has("why", names.missing);
  await page.click("#clear");
  await has("now-show", names.show);
  await has("playing", names.sequence);
  await has("show", names.show);
  await has("lines", `Starting show: ${names.show}`);
  await has("lines", `Trigger detected: ${names.trigger}`);
  await has("errors", `Cannot read show file: ${names.missing}`);
  await page.locator("#week-words summary").click();
  await has("week-list", names.show);
  await page.locator("#history-box summary").click();
  await has("history", names.show);
  assert.doesNotMatch(await page.title(), /owned/);
  assert.equal(await page.locator("main img:not(#week), main script, main b, main a").count(), 0);
  const wide = await page.evaluate(() => document.documentElement.scrollWidth - document.documentElement.clientWidth);
  assert.equal(wide, 0, "nothing runs out of the page sideways");
  await page.selectOption("#show", names.show);
  await page.click("#play-button");
  await has("answer", "Asked to play");
  await has("now-times", "on demand");
  assert.deepEqual(page.wrongs, [], "the page's console");
} finally {
  await browser.close();
}
