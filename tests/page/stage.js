// The two sides of a test: a server with a stage behind it, and a browser before it.
import { spawn, execFileSync } from "node:child_process";
import { createInterface } from "node:readline";
import { mkdtempSync, rmSync, writeFileSync, readFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { chromium } from "playwright-core";

const Patience = 10000;

/** Waits until check() gives something; says what it waited for. */
export async function until(what, check) {
  const end = Date.now() + Patience;
  for (;;) {
    const found = await check();
    if (found) return found;
    if (Date.now() > end) throw new Error(`waited ${Patience} ms in vain: ${what}`);
    await new Promise((resolve) => setTimeout(resolve, 20));
  }
}

/** A StagePage process: set() says what it shows, done holds what was asked of the player. */
export class Stage {
  constructor(build) {
    this.program = join(build, "tests", "StagePage");
    this.folder = mkdtempSync(join(tmpdir(), "vextray-page-"));
    this.done = [];
    this.port = 0;
    this.number = 0;  // of the newest line
  }

  passwords() {
    const file = join(this.folder, "passwords");
    const hash = (role, password) => execFileSync(this.program, ["--hash", role, password], { encoding: "utf8" });
    writeFileSync(file, hash("control", "correct horse") + hash("view", "looking only"), { mode: 0o600 });
    return [file];
  }

  async start(passwords = []) {
    this.process = spawn(this.program, [String(this.port), ...passwords], { stdio: ["pipe", "pipe", "inherit"] });
    createInterface({ input: this.process.stdout }).on("line", (line) => {
      const told = JSON.parse(line);
      if (told.port) this.port = told.port;
      else this.done.push(told);
    });
    await until("the server's port", () => this.port !== 0);
    await until("the server", () => fetch(`${this.url}/healthz`).then(() => true, () => false));
  }

  get url() {
    return `http://127.0.0.1:${this.port}`;
  }

  set(told) {
    if (told.lines) {
      told = { ...told, lines: told.lines.map((line, i) => ({ number: i + 1, ...line })) };
      this.number = told.lines.length;
    }
    this.process.stdin.write(JSON.stringify(told) + "\n");
  }

  publish(event, value, key = "") {
    if (event === "line") value = { number: value.count > 1 ? this.number : ++this.number, ...value };
    this.set({ publish: [[event, value, key]] });
  }

  async stop() {
    if (!this.process || this.process.exitCode !== null) return;
    const ended = new Promise((resolve) => this.process.once("exit", resolve));
    this.process.stdin.end();
    await ended;
  }

  async end() {
    await this.stop();
    rmSync(this.folder, { recursive: true, force: true });
  }
}

/** One browser for all tests, a fresh profile, nothing that calls home. */
export async function openBrowser() {
  return chromium.launch({
    executablePath: process.env.CHROMIUM || "/usr/bin/chromium",
    args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
      "--disable-component-update", "--disable-sync"],
  });
}

/** A page that remembers whatever went wrong in it, and every address it asked for. */
export async function openPage(browser, options = {}) {
  const context = await browser.newContext({
    viewport: { width: 1280, height: 900 }, colorScheme: "dark", ...options });
  const page = await context.newPage();
  page.wrongs = [];
  page.on("console", (message) => {
    if (["error", "warning"].includes(message.type())) page.wrongs.push(message.text());
  });
  page.on("pageerror", (error) => page.wrongs.push(String(error)));
  page.on("request", (request) => {
    const url = new URL(request.url());
    if (url.hostname !== "127.0.0.1") page.wrongs.push(`asks ${url.host}`);
  });
  return page;
}

/** A week as a picture, drawn by the program that draws it for people. */
export function drawnWeek(build, folder) {
  const vexctl = join(build, "bin", "vexctl");
  const settings = { ...process.env, VEX_RUNTIME_DIR: join(folder, "run"),
    VEX_SETTINGS: join(folder, "settings.reg") };
  const week = join(folder, "weeksched.qsc");
  for (const [start, end, show] of [["Sun 18:00", "Sun 22:00", "eve.shw"], ["Mon 18:00", "Mon 21:00", "eve.shw"],
    ["Tue 18:00", "Tue 21:00", "eve.shw"], ["Wed 18:00", "Wed 21:00", "eve.shw"], ["Thu 18:00", "Thu 21:00", "eve.shw"],
    ["Fri 17:30", "Fri 23:00", "weekend & friends.shw"], ["Sat 17:30", "Sat 23:30", "weekend & friends.shw"]]) {
    execFileSync(vexctl, ["week", "add", start, end, show, "--file", week, "--no-reload"], { env: settings, stdio: "ignore" });
  }
  const picture = join(folder, "week.svg");
  execFileSync(vexctl, ["timeline", "--from", "2026-12-20 00:00", "--to", "2026-12-27 00:00", "--week", week,
    "--svg", picture], { env: settings, stdio: "ignore" });
  return readFileSync(picture, "utf8");
}
