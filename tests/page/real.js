#!/usr/bin/env node
// The page of the real tray before the real player: each button, and what it does to the player as its own status
// file tells it. tests/page/real.py sets the scene.
//
//   node tests/page/real.js URL STATUS-FILE WEEK-FILE NEXT-WEEK-FILE
import assert from "node:assert/strict";
import { copyFileSync, readFileSync } from "node:fs";
import { openBrowser, openPage, until } from "./stage.js";

const [url, statusFile, weekFile, nextWeekFile] = process.argv.slice(2);

const status = () => {
  try {
    return JSON.parse(readFileSync(statusFile, "utf8"));
  } catch {
    return null;
  }
};
const plays = (show) => until(`the player plays ${show}`, () => status()?.current.includes(`(${show},`));

const browser = await openBrowser();
try {
  const page = await openPage(browser);
  await page.goto(url);
  const shows = (id, text) => until(`#${id} shows "${text}"`, async () => (await page.locator(`#${id}`).innerText()).includes(text));

  await shows("now-show", "eve.shw");
  await shows("lines", "Starting show: eve.shw");
  await shows("playing", "on.vexseq");
  await until("lights", async () => (await page.locator("#lights canvas").count()) > 0);
  await shows("lights", "2 lit");
  await shows("light", "Playing");
  await until("the week", () => page.locator("#week").evaluate((image) => image.complete && image.naturalWidth > 0));

  await until("both shows", async () => (await page.locator("#show option").count()) >= 2);
  await page.selectOption("#show", "other.shw");
  await page.click("#play-button");
  await plays("other.shw");
  await shows("now-show", "other.shw");
  await shows("now-times", "on demand");

  await page.click("#clear");
  await plays("eve.shw");
  await shows("now-show", "eve.shw");

  const before = status().link;
  await page.click("#link");
  await until("the link changes", () => status().link === !before);
  await shows("link", before ? "on" : "off");
  await page.click("#link");
  await until("the link changes back", () => status().link === before);

  copyFileSync(nextWeekFile, weekFile);
  await page.click("#reload");
  await plays("other.shw");
  await shows("now-show", "other.shw");
  assert.deepEqual(page.wrongs, [], "the page's console");

  await page.click("#stop");
  await shows("sure", "Stop the player?");
  await page.click("#sure-yes");
  await shows("sure", "Really stop it?");
  assert.ok(status(), "asked, not stopped");
  await page.click("#sure-yes");
  await until("the player has ended", () => status() === null);
  await shows("light", "Off");
  assert.deepEqual(page.wrongs.filter((wrong) => !wrong.includes("409")), [], "the page's console");
} finally {
  await browser.close();
}
