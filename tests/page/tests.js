// Each test opens a page of its own before a stage of its own; a page that complained in its console failed.
import assert from "node:assert/strict";
import { join } from "node:path";
import { createRequire } from "node:module";
import { Stage, drawnWeek, openPage, until } from "./stage.js";
import * as samples from "./samples.js";

const axeSource = createRequire(import.meta.url).resolve("axe-core/axe.min.js");

/** A test with a stage and a page, told what to show before the page is opened. */
function played(told, play, { passwords = false, options = {}, complains = false } = {}) {
  return async (rig) => {
    const stage = new Stage(rig.build);
    const page = await openPage(rig.browser, options);
    try {
      await stage.start(passwords ? stage.passwords() : []);
      stage.set(typeof told === "function" ? told(rig, stage) : told);
      await page.goto(stage.url);
      await play({ ...rig, stage, page });
      if (!complains) assert.deepEqual(page.wrongs, [], "the page's console");
    } finally {
      await page.context().close();
      await stage.end();
    }
  };
}

const textOf = (page, id) => page.locator(`#${id}`).innerText();
const shows = (page, id, text) => until(`#${id} shows "${text}"`, async () => (await textOf(page, id)).includes(text));
const usual = (rig, stage) => ({ state: samples.playing(), lines: samples.lines, shows: ["christmas.shw", "eve.shw"],
  week: drawnWeek(rig.build, stage.folder) });

/** No finding of weight; what was looked at goes into the message. */
async function accessible(page, what) {
  if (!(await page.evaluate(() => "axe" in window))) await page.evaluate(await axeText());
  const result = await page.evaluate(() => window.axe.run(document, { resultTypes: ["violations"] }));
  const findings = result.violations.map((one) => `${one.impact} ${one.id}: ${one.nodes.map((node) => node.html).join(" | ")}`);
  assert.deepEqual(findings, [], `axe: ${what}`);
  assert.ok(result.passes.length > 10, "axe has looked");
}

async function axeText() {
  const { readFile } = await import("node:fs/promises");
  return readFile(axeSource, "utf8");
}

async function fitsIn(page) {
  const wide = await page.evaluate(() => document.documentElement.scrollWidth - document.documentElement.clientWidth);
  assert.equal(wide, 0, "nothing runs out of the page sideways");
}

/** Moves on by the keyboard until the element has the focus. */
async function tabTo(page, id) {
  for (let i = 0; i < 60; i++) {
    await page.keyboard.press("Tab");
    if (await page.evaluate((wanted) => document.activeElement && document.activeElement.id === wanted, id)) return;
  }
  throw new Error(`#${id} cannot be reached by the keyboard`);
}

const asked = (stage, count) => until(`${count} actions`, () => stage.done.length >= count && stage.done);

export const tests = {
  "tells what plays, what comes and how long": played(usual, async ({ page }) => {
    await shows(page, "light", "Playing");
    await shows(page, "light-since", "since 18:00");
    await shows(page, "now-show", "eve.shw");
    await shows(page, "now-times", "from 18:00, until 22:00, weekly");
    await shows(page, "now-left", "3 h 59 min left");
    await shows(page, "playing", "Musical: carol.vexseq");
    await shows(page, "playing", "Sound: carol.ogg");
    await shows(page, "next-show", "christmas.shw");
    await shows(page, "next-times", "from Fri 2026-12-25 17:30");
    assert.match(await textOf(page, "clock"), /^18:00:\d\d$/);
    await shows(page, "cause-packets", "78 a second in 2 universes");
    await shows(page, "cause-sound", "moves, 0 min 13 s");
  }),

  "the clock goes on by itself": played(usual, async ({ page }) => {
    await shows(page, "clock", "18:00:");
    const first = await textOf(page, "clock");
    await until("another second", async () => (await textOf(page, "clock")) > first);
  }),

  "tells what is missing, each cause apart": played({ state: samples.trouble() }, async ({ page }) => {
    await shows(page, "light", "Trouble");
    await shows(page, "why", "no packets are seen of universe 1, since 2026-12-24 18:00:03");
    assert.equal(await page.locator("#cause-player").getAttribute("class"), "good");
    assert.equal(await page.locator("#cause-packets").getAttribute("class"), "bad");
    assert.equal(await page.locator("#cause-sound").getAttribute("class"), "bad");
    await shows(page, "cause-packets", "missing in the last second – since 18:00:03");
    await shows(page, "cause-sound", "stands still – since 18:00:03");
    assert.match(await page.title(), /^Trouble/);
  }),

  "a state that is written is on the page": played(usual, async ({ page, stage }) => {
    await shows(page, "light", "Playing");
    stage.set({ state: samples.trouble() });
    await shows(page, "light", "Trouble");
    stage.set({ state: samples.off() });
    await shows(page, "light", "Off");
    await shows(page, "now-show", "Nothing");
    assert.equal(await textOf(page, "now-left"), "");
  }),

  "lines come as they are written, errors in front": played(usual, async ({ page, stage }) => {
    await shows(page, "lines", "Starting Musical: carol.vexseq");
    await shows(page, "errors", "ERROR WITH SEQUENCE (File not found) Musical: snow.vexseq");
    await shows(page, "errors", "3 times");
    stage.publish("line", { time: "2026-12-24 18:00:09", level: 3, text: "ERROR PLAYING SEQUENCE", count: 1 });
    await shows(page, "errors", "ERROR PLAYING SEQUENCE");
    stage.publish("line", { time: "2026-12-24 18:00:10", level: 3, text: "ERROR PLAYING SEQUENCE", count: 2 });
    await shows(page, "errors", "2 times");
    assert.equal(await page.locator("#errors li").count(), 2, "a repetition is no new line");
    assert.match(await page.locator("#lines li").first().innerText(), /ERROR PLAYING SEQUENCE/);
    await page.getByLabel("only errors").check();
    assert.equal(await page.locator("#lines li").count(), 2);
  }),

  "no more than 200 lines are kept": played({ state: samples.playing() }, async ({ page, stage }) => {
    await shows(page, "light", "Playing");
    for (let i = 0; i < 260; i++) stage.publish("line", { time: "2026-12-24 18:00:09", level: 1, text: `line ${i}`, count: 1 });
    await until("the last of them", async () => (await page.locator("#lines li").first().innerText()).includes("line 259"));
    assert.equal(await page.locator("#lines li").count(), 200);
  }),

  "texts of shows and lines are texts": played(
    () => {
      const evil = `<img src=x onerror="document.title='owned'"><script>document.title='owned'</script>`;
      const state = samples.playing({ why: [evil] });
      state.now.show = state.next.show = state.player.media = evil;
      state.player.playing = [{ play: evil, file: evil }];
      return { state, shows: [evil], lines: [{ time: evil, level: 3, text: evil, count: 2 }],
        history: [{ show: evil, from: evil, to: evil, broken: false, songs: [], errors: [] }],
        week: `<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 9 9" onload="document.title='owned'"><script>document.title='owned'</script><rect width="9" height="9"><title>&lt;b&gt;show&lt;/b&gt;</title></rect></svg>` };
    },
    async ({ page }) => {
      await shows(page, "now-show", "<img src=x onerror=");
      await shows(page, "errors", "<script>document.title='owned'</script>");
      await page.locator("#week-words summary").click();
      await shows(page, "week-list", "<b>show</b>");
      await page.locator("#history-box summary").click();
      await shows(page, "history", "<img");
      assert.equal(await page.locator("#show option").first().innerText().then((text) => text.includes("<script>")), true);
      assert.match(await page.title(), /^Playing/);
      assert.equal(await page.locator("main img:not(#week)").count(), 0);
      assert.deepEqual(page.wrongs.filter((wrong) => !wrong.includes("Content Security Policy")), []);
    },
    { complains: true },  // of the picture's script, which it does not run
  ),

  "names that would reorder, clear or overflow the page do not": played(
    () => {
      const wide = "w".repeat(10000);
      const turned = "\u202egnp.live\u202d\u2067\u2066 \u0007\u001b[2J\u0085\u0000.shw";
      const state = samples.playing({ why: [turned, wide] });
      state.now.show = turned;
      state.next.show = state.player.media = wide;
      state.player.playing = [{ play: "Musical", file: turned }, { play: "Background", file: wide }];
      return { state, shows: [turned, wide, "eve.shw"], lines: [
        { time: "2026-12-24 18:00:01", level: 3, text: turned, count: 7 },
        { time: "2026-12-24 18:00:02", level: 1, text: `one\n18:00:03 two\r\n18:00:04 three`, count: 1 },
        { time: "2026-12-24 18:00:05", level: 1, text: wide, count: 2 }],
        history: [{ show: wide, from: "2026-12-24 18:00:00", to: null, broken: false, songs: [], errors: [] }] };
    },
    async ({ page, stage }) => {
      await shows(page, "light", "Playing");
      await until("the lines", async () => (await page.locator("#lines li").count()) === 3);
      const line = page.locator("#errors li").first();
      const places = await until("their places", () => line.evaluate((one) => {
        const [time, text, count] = ["time", "bdi", ".count"].map((part) => one.querySelector(part).getBoundingClientRect());
        return text.width > 0 && [time.right <= text.left, count.left >= text.right || count.top >= text.bottom];
      }));
      assert.deepEqual(places, [true, true], "what stands around a turned text stays in its place");
      assert.match(await line.locator(".count").innerText(), /^7 times$/);
      await page.locator("#history-box summary").click();
      await shows(page, "history", "wwww");
      await fitsIn(page);
      await accessible(page, "hostile names");
      await page.selectOption("#show", { index: 0 });
      await page.click("#play-button");
      assert.match((await asked(stage, 1))[0].show, /^\u202egnp/);
    },
    { options: { viewport: { width: 360, height: 760 } } },
  ),

  "everything has a name for who does not see it": played(usual, async ({ page, stage }) => {
    await shows(page, "light", "Playing");
    stage.publish("lights", samples.lights(1, 4), "sacn 1");
    for (const [role, name] of [["heading", "Is the show playing?"], ["heading", "Now"], ["heading", "Next"], ["heading", "Lights"],
      ["list", "What plays"], ["combobox", "Show on demand"], ["combobox", "for"], ["button", "Play"],
      ["button", "Clear the show on demand"], ["button", "Reload the schedules"], ["button", /^Turn the link o/],
      ["button", /^Stop the player/], ["checkbox", "only errors"], ["list", "Errors"], ["list", "Last"],
      ["region", /^The week as a picture/], ["img", /^The week as a picture/], ["img", /^Universe 1, sACN: /]]) {
      await page.getByRole(role, { name, exact: typeof name === "string" }).first().waitFor({ timeout: 5000 });
    }
    assert.match(await page.getByRole("status").filter({ hasText: "Playing" }).innerText(), /Playing/, "a new light is read out");
    assert.match(await page.locator("#errors li").first().innerText(), /Error:/, "not by colour alone");
  }),

  "who hears nothing new says so": played(usual, async ({ page, stage }) => {
    await shows(page, "light", "Playing");
    stage.set({ still: true });
    await shows(page, "light", "Unknown");
    await shows(page, "light-since", "last heard at 18:00:");
    await shows(page, "line-state", "what you see is old");
    assert.match(await page.title(), /^Unknown/);
    await accessible(page, "no news");
    stage.set({ still: false });
    await shows(page, "light", "Playing");
    await shows(page, "line-state", "live");
  }),

  "lines that came while there was no connection are there afterwards": played(usual, async ({ page, stage }) => {
    await shows(page, "lines", "Starting Musical: carol.vexseq");
    await stage.stop();
    await shows(page, "light", "Unknown");
    await stage.start();
    stage.set({ state: samples.playing(), lines: [...samples.lines, { time: "2026-12-24 18:00:06", level: 3, text: "ERROR IN BETWEEN", count: 1 }] });
    await shows(page, "lines", "ERROR IN BETWEEN");
    await shows(page, "errors", "ERROR IN BETWEEN");
    assert.equal(await page.locator("#lines li").count(), samples.lines.length + 1);
  }, { complains: true }),

  "lights are drawn from what was seen": played(usual, async ({ page, stage }) => {
    await shows(page, "light", "Playing");
    stage.publish("lights", samples.lights(2, 20, "artnet"), "artnet 2");
    stage.publish("lights", samples.lights(1, 4), "sacn 1");
    await until("two universes", async () => (await page.locator("#lights canvas").count()) === 2);
    assert.match(await page.locator("#lights li").first().innerText(), /^1 · sACN · 160 lit/);
    assert.match(await page.locator("#lights canvas").nth(1).getAttribute("aria-label"), /Universe 2, Art-Net: 176 of 512/);
    const level = (x) => page.locator("#lights canvas").first().evaluate((canvas, at) =>
      canvas.getContext("2d").getImageData(at, 0, 1, 1).data[0], x);
    assert.equal(await level(4), 255);
    assert.equal(await level(20), 0);
    stage.publish("lights", samples.lights(1, 20), "sacn 1");
    await until("the light has moved", async () => (await level(20)) === 255 && (await level(4)) === 0);
  }),

  "each button asks for one thing": played(usual, async ({ page, stage }) => {
    await shows(page, "light", "Playing");
    await page.selectOption("#show", "eve.shw");
    await page.selectOption("#minutes", "30");
    await page.click("#play-button");
    assert.deepEqual((await asked(stage, 1))[0], { do: "play", show: "eve.shw", seconds: 1800 });
    await shows(page, "answer", "Asked.");
    await page.click("#clear");
    assert.equal((await asked(stage, 2))[1].do, "clear");
    await page.click("#reload");
    assert.equal((await asked(stage, 3))[2].do, "reload");
    await shows(page, "link", "Turn the link off");
    await page.click("#link");
    assert.equal((await asked(stage, 4))[3].do, "link off");
    const state = samples.playing();
    state.player.link = false;
    stage.set({ state });
    await shows(page, "link", "Turn the link on");
    await page.click("#link");
    assert.equal((await asked(stage, 5))[4].do, "link on");
  }),

  "what the player refuses is said": played({ state: samples.off(), shows: [], answer: { done: false, text: "No player is running." } },
    async ({ page }) => {
      await shows(page, "light", "Off");
      await page.click("#clear");
      await shows(page, "answer", "No player is running.");
      assert.equal(await page.locator("#answer").getAttribute("class"), "refused");
    }, { complains: true }),  // the browser itself writes the status 409 down

  "to stop the player is asked twice": played(usual, async ({ page, stage }) => {
    await shows(page, "light", "Playing");
    await page.click("#stop");
    await shows(page, "sure", "Stop the player?");
    await page.click("#sure-no");
    await page.click("#stop");
    await shows(page, "sure", "Stop the player?");
    await page.click("#sure-yes");
    await shows(page, "sure", "Really stop it?");
    await page.keyboard.press("Escape");
    assert.deepEqual(stage.done, [], "twice begun, never finished");
    await page.click("#stop");
    await shows(page, "sure", "Stop the player?");
    await page.click("#sure-yes");
    await shows(page, "sure", "Really stop it?");
    await page.click("#sure-yes");
    assert.equal((await asked(stage, 1))[0].do, "stop");
  }, { complains: true }),

  "works with no shows": played({ state: samples.off(), shows: [] }, async ({ page }) => {
    await shows(page, "show", "There are no shows");
    assert.equal(await page.locator("#play-button").isDisabled(), true);
    await accessible(page, "no shows");
    await fitsIn(page);
  }),

  "works with five hundred shows": played({ state: samples.playing(), shows: samples.manyShows }, async ({ page, stage }) => {
    await until("all of them", async () => (await page.locator("#show option").count()) === 500);
    await page.fill("#filter", "NUMBER 49");
    assert.equal(await page.locator("#show option").count(), 10);
    await page.selectOption("#show", "show number 498.shw");
    await page.click("#play-button");
    assert.equal((await asked(stage, 1))[0].show, "show number 498.shw");
    await accessible(page, "many shows");
  }),

  "everything can be done by the keyboard alone": played(usual, async ({ page, stage }) => {
    await shows(page, "light", "Playing");
    await until("the shows", async () => (await page.locator("#show option").count()) === 2);
    await page.keyboard.press("Tab");
    assert.equal(await page.evaluate(() => document.activeElement.className), "skip");
    await page.keyboard.press("Enter");
    assert.equal(await page.evaluate(() => document.activeElement.id), "main");
    await tabTo(page, "show");
    await page.keyboard.press("ArrowDown");
    await tabTo(page, "play-button");
    await page.keyboard.press("Enter");
    assert.equal((await asked(stage, 1))[0].show, "eve.shw");
    await tabTo(page, "clear");
    await page.keyboard.press("Space");
    assert.equal((await asked(stage, 2))[1].do, "clear");
    await tabTo(page, "stop");
    await page.keyboard.press("Enter");
    await shows(page, "sure", "Stop the player?");
    assert.equal(await page.evaluate(() => document.activeElement.id), "sure-no", "Enter alone stops nothing");
    await page.keyboard.press("Enter");
    assert.equal(await page.evaluate(() => document.activeElement.id), "stop", "the focus comes back");
    await page.keyboard.press("Enter");
    await shows(page, "sure", "Stop the player?");
    await tabTo(page, "sure-yes");
    await page.keyboard.press("Enter");
    await shows(page, "sure", "Really stop it?");
    await tabTo(page, "sure-yes");
    await page.keyboard.press("Enter");
    assert.equal((await asked(stage, 3))[2].do, "stop");
    await tabTo(page, "week-frame");
  }, { complains: true }),

  "says when it is no longer live, and goes on by itself": played(usual, async ({ page, stage }) => {
    await shows(page, "line-state", "live");
    await stage.stop();
    await shows(page, "line-state", "no news");
    await stage.start();
    stage.set({ state: samples.trouble() });
    await shows(page, "line-state", "live");
    await shows(page, "light", "Trouble");
  }, { complains: true }),

  "who has no password sees nothing, who has the second looks only": played(usual, async ({ page }) => {
    await page.getByLabel("Password").waitFor();
    await accessible(page, "the login");
    assert.equal(await page.locator("#all").isVisible(), false);
    await page.getByLabel("Password").fill("wrong");
    await page.keyboard.press("Enter");
    await shows(page, "login-answer", "This is not the password.");
    await page.getByLabel("Password").fill("looking only");
    await page.keyboard.press("Enter");
    await shows(page, "light", "Playing");
    assert.equal(await page.locator("#ask").isVisible(), false);
    await page.reload();
    await shows(page, "light", "Playing");
    await page.click("#logout");
    await page.getByLabel("Password").fill("correct horse");
    await page.keyboard.press("Enter");
    await shows(page, "light", "Playing");
    assert.equal(await page.locator("#ask").isVisible(), true);
    await page.click("#clear");
    await shows(page, "answer", "Asked.");
    assert.equal(await page.evaluate(() => document.cookie), "", "no script sees the cookie");
  }, { passwords: true, complains: true }),
};

for (const [what, options] of [
  ["a phone at night", { viewport: { width: 360, height: 760 }, colorScheme: "dark" }],
  ["a phone by day", { viewport: { width: 360, height: 760 }, colorScheme: "light" }],
  ["a desk at night", { viewport: { width: 1280, height: 900 }, colorScheme: "dark" }],
  ["a desk by day", { viewport: { width: 1280, height: 900 }, colorScheme: "light" }],
]) {
  tests[`reads well on ${what}`] = played(usual, async ({ page, stage, pictures }) => {
    await shows(page, "light", "Playing");
    for (let universe = 1; universe <= 4; universe++) {
      stage.publish("lights", samples.lights(universe, universe * 7), `sacn ${universe}`);
    }
    await until("four universes", async () => (await page.locator("#lights canvas").count()) === 4);
    await until("the week", () => page.locator("#week").evaluate((image) => image.complete && image.naturalWidth > 0));
    if (pictures) await page.screenshot({ path: join(pictures, `page-${what.replaceAll(" ", "-")}.png`), fullPage: true });
    await accessible(page, what);
    await fitsIn(page);
    stage.set({ state: samples.trouble() });
    await shows(page, "light", "Trouble");
    if (pictures) await page.screenshot({ path: join(pictures, `trouble-${what.replaceAll(" ", "-")}.png`) });
    await accessible(page, `${what}, trouble`);
    await fitsIn(page);
    await page.click("#stop");
    await shows(page, "sure", "Stop the player?");
    await accessible(page, `${what}, the question`);
  }, { options, complains: true });
}
