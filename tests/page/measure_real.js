#!/usr/bin/env node
// How soon the real page can be used, and how soon a line that the player writes stands on it, in a real browser.
// bench/tray/measure.py sets the scene.
//
//   node tests/page/measure_real.js PAGE-PORT OSC-PORT
import { createSocket } from "node:dgram";
import { openBrowser, openPage, until } from "./stage.js";

const [port, osc] = process.argv.slice(2).map(Number);
const url = `http://127.0.0.1:${port}/`;
const figures = (list) => {
  const sorted = [...list].sort((a, b) => a - b);
  const at = (share) => sorted[Math.min(sorted.length - 1, Math.floor(share * sorted.length))].toFixed(1);
  return `p50 ${at(0.5)}  p99 ${at(0.99)}  max ${at(1)} ms (${list.length})`;
};

/** Open Sound Control by hand: a text ends in zeros up to a multiple of four bytes. */
function trigger(name) {
  const text = (value) => Buffer.concat([Buffer.from(value), Buffer.alloc(4 - (Buffer.byteLength(value) % 4))]);
  const numbers = Buffer.alloc(12);
  [0, 1, 3].forEach((number, i) => numbers.writeInt32BE(number, i * 4));
  return Buffer.concat([text("/trigger"), text(",iiis"), numbers, text(name)]);
}

const browser = await openBrowser();
try {
  const usable = [];
  for (let i = 0; i < 20; i++) {
    const page = await openPage(browser);
    await page.addInitScript(() => {
      new MutationObserver(() => {
        const all = document.getElementById("all");
        if (!window.usableAt && all && !all.hidden && document.getElementById("light-word").textContent === "Playing" &&
            !document.getElementById("play-button").disabled && document.querySelectorAll("#show option").length > 0)
          window.usableAt = performance.now();
      }).observe(document, { subtree: true, childList: true, characterData: true, attributes: true });
    });
    await page.goto(url);
    await until("the page", () => page.evaluate(() => window.usableAt));
    usable.push(await page.evaluate(() => window.usableAt));
    await page.context().close();
  }
  console.log(`page usable after the request: ${figures(usable)}`);

  const page = await openPage(browser);
  await page.goto(url);
  await until("the page", async () => (await page.locator("#light-word").innerText()) === "Playing");
  await page.evaluate(() => {
    window.seen = {};
    new MutationObserver(() => {
      for (const line of document.querySelectorAll("#lines li")) {
        const name = /Trigger detected: (page \d+)/.exec(line.textContent)?.[1];
        if (name && !(name in window.seen)) window.seen[name] = Date.now();
      }
    }).observe(document.getElementById("lines"), { childList: true });
  });
  const sender = createSocket("udp4");
  const sent = {};
  for (let i = 0; i < 300; i++) {
    const name = `page ${i}`;
    sent[name] = Date.now();
    sender.send(trigger(name), osc, "127.0.0.1");
    await new Promise((done) => setTimeout(done, 100));
  }
  await new Promise((done) => setTimeout(done, 500));
  sender.close();
  const seen = await page.evaluate(() => window.seen);
  const times = Object.keys(seen).filter((name) => name in sent).map((name) => seen[name] - sent[name]);
  console.log(`a line from the press to the page in the browser: ${figures(times)}, ${Object.keys(sent).length - times.length} not seen`);
} finally {
  await browser.close();
}
