#!/usr/bin/env node
// How soon the page can be used, how soon a line is on it, and what fifty open pages cost, on the stage.
//
//   node tests/page/measure.js BUILD [PAGES [SECONDS]]
//
// While the pages stand open, four universes are published ten times a second each. What they do to a player is
// seen beside it: run bench/FloodBench 0, which tells how late its ticks are.
import { resolve } from "node:path";
import { readFileSync } from "node:fs";
import { Stage, openBrowser, openPage, until } from "./stage.js";
import * as samples from "./samples.js";

const [build, pages = "50", seconds = "20"] = process.argv.slice(2);
const stage = new Stage(resolve(build));
const numbers = (list) => {
  const sorted = list.toSorted ? list.toSorted((a, b) => a - b) : [...list].sort((a, b) => a - b);
  const at = (share) => sorted[Math.min(sorted.length - 1, Math.floor(share * sorted.length))].toFixed(1);
  return `p50 ${at(0.5)}  p99 ${at(0.99)}  max ${at(1)} ms (${list.length})`;
};
const processor = () => {
  const fields = readFileSync(`/proc/${stage.process.pid}/stat`, "utf8").split(") ")[1].split(" ");
  return (Number(fields[11]) + Number(fields[12])) * 10;  // ms
};

const browser = await openBrowser();
const controls = [];
let received = 0;
await stage.start();
stage.set({ state: samples.playing(), lines: samples.lines, shows: samples.manyShows });
try {
  for (let i = 0; i < Number(pages); i++) {
    const control = new AbortController();
    controls.push(control);
    fetch(`${stage.url}/api/events`, { signal: control.signal })
      .then(async (answer) => {
        for await (const bytes of answer.body) received += bytes.length;
      })
      .catch(() => {});
  }
  let place = 0;
  const lights = setInterval(() => {
    place = (place + 1) % 32;
    for (let universe = 1; universe <= 4; universe++) stage.publish("lights", samples.lights(universe, place), `sacn ${universe}`);
  }, 100);

  const usable = [];
  for (let i = 0; i < 10; i++) {
    const page = await openPage(browser);
    await page.addInitScript(() => {
      new MutationObserver(() => {
        const all = document.getElementById("all");
        const word = document.getElementById("light-word");
        if (!window.usableAt && all && !all.hidden && word.textContent === "Playing" && !document.getElementById("play-button").disabled &&
            document.querySelectorAll("#show option").length > 0) window.usableAt = performance.now();
      }).observe(document, { subtree: true, childList: true, characterData: true, attributes: true });
    });
    await page.goto(stage.url);
    await until("the page", () => page.evaluate(() => window.usableAt));
    usable.push(await page.evaluate(() => window.usableAt));
    await page.context().close();
  }
  console.log(`usable after the request: ${numbers(usable)}`);

  const page = await openPage(browser);
  await page.goto(stage.url);
  await until("the page", async () => (await page.locator("#light-word").innerText()) === "Playing");
  await page.evaluate(() => {
    window.seen = {};
    new MutationObserver(() => {
      const text = document.querySelector("#lines li")?.lastChild?.textContent;
      if (text && !(text in window.seen)) window.seen[text] = Date.now();
    }).observe(document.getElementById("lines"), { childList: true });
  });
  const sent = {};
  const before = processor();
  const began = Date.now();
  for (let i = 0; Date.now() - began < Number(seconds) * 1000; i++) {
    sent[`line ${i}`] = Date.now();
    stage.publish("line", { time: "2026-12-24 18:00:09", level: 1, text: `line ${i}`, count: 1 });
    await new Promise((done) => setTimeout(done, 100));
  }
  const spent = processor() - before;
  await new Promise((done) => setTimeout(done, 500));
  const seen = await page.evaluate(() => window.seen);
  const missed = Object.keys(sent).filter((text) => !(text in seen)).length;
  console.log(`a line on the page after it was published: ${numbers(Object.keys(seen).filter((text) => text in sent).map((text) => seen[text] - sent[text]))}, ${missed} not seen`);
  console.log(`${pages} pages: server ${(spent / (Date.now() - began) * 100).toFixed(1)} % of a core, ${(received / 1e6).toFixed(1)} MB sent`);
  clearInterval(lights);
} finally {
  for (const control of controls) control.abort();
  await browser.close();
  await stage.end();
}
process.exit(0);
