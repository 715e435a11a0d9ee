// The page of the tray. What it shows comes from this server alone: once when it opens, then as events. Texts of
// shows and lines are put in as text, never as markup.
"use strict";

const at = (id) => document.getElementById(id);
const MostLines = 200;
const MostErrors = 20;
const ErrorLevel = 3;

let role = "none";
let passwords = false;
let token = "";
let state = null;
let events = null;
let playerTime = null; // what the clock at the player said, in ms, and when we heard it
let live = false; // whether what is on the page is still so
let lines = []; // newest last

// ---- asking the server

async function ask(path) {
  const answer = await fetch(path, { headers: { Accept: "application/json" } });
  if (answer.status === 401) throw new Error("log in");
  if (!answer.ok) throw new Error(`${path}: ${answer.status}`);
  return answer.json();
}

async function change(path, body) {
  const answer = await fetch(path, {
    method: "POST",
    headers: { "Content-Type": "application/json", "X-Vex-Token": token },
    body: JSON.stringify(body),
  });
  const said = await answer.json().catch(() => ({}));
  return { status: answer.status, ok: answer.ok, ...said };
}

async function meet() {
  const session = await ask("/api/session");
  role = session.role;
  passwords = session.passwords;
  token = session.token;
  at("login").hidden = role !== "none";
  at("all").hidden = role === "none";
  at("ask").hidden = role !== "control";
  at("logout").hidden = !passwords || role === "none";
  return role !== "none";
}

// ---- putting things in

function setText(element, text) {
  if (element.textContent !== text) element.textContent = text;
}

function make(tag, text, className) {
  const element = document.createElement(tag);
  if (text !== undefined) element.textContent = text;
  if (className) element.className = className;
  return element;
}

/** Fills a list with one element for each text, touching nothing that stays the same. */
function setList(list, texts) {
  while (list.children.length > texts.length) list.lastChild.remove();
  while (list.children.length < texts.length) list.append(make("li"));
  texts.forEach((text, i) => setText(list.children[i], text));
}

// ---- time: the player's civil time, read as if there were no zones

function moment(text) {
  const parts = /^(\d{4})-(\d\d)-(\d\d) (\d\d):(\d\d)(?::(\d\d))?$/.exec(text || "");
  if (!parts) return null;
  const [year, month, day, hour, minute, second] = parts.slice(1).map((part) => Number(part || 0));
  return Date.UTC(year, month - 1, day, hour, minute, second);
}

function nowAtPlayer() {
  return playerTime === null ? null : playerTime.said + (performance.now() - playerTime.heard);
}

const two = (number) => String(number).padStart(2, "0");

function clockText(time) {
  const date = new Date(time);
  return `${two(date.getUTCHours())}:${two(date.getUTCMinutes())}:${two(date.getUTCSeconds())}`;
}

const Days = ["Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"];

/** "18:00", with the day where it is not today's. */
function when(text) {
  const time = moment(text);
  if (time === null) return text || "";
  const date = new Date(time);
  const clock = clockText(time).replace(/:00$/, "");
  const now = nowAtPlayer();
  const today = now !== null && new Date(now).toISOString().slice(0, 10) === date.toISOString().slice(0, 10);
  return today ? clock : `${Days[date.getUTCDay()]} ${text.slice(0, 10)} ${clock}`;
}

function duration(milliseconds) {
  const all = Math.max(0, Math.round(milliseconds / 1000));
  const hours = Math.floor(all / 3600);
  const minutes = Math.floor((all % 3600) / 60);
  return hours > 0 ? `${hours} h ${two(minutes)} min` : `${minutes} min ${two(all % 60)} s`;
}

/** The state comes twice a second: without one for a while nobody knows, whatever the connection says. */
const NewsLasts = 5000;
const ReconnectAfter = 20000;

function tick() {
  const silence = playerTime === null ? 0 : performance.now() - playerTime.heard;
  if (live && silence > NewsLasts) connected(false);
  if (events && silence > ReconnectAfter) {
    playerTime.heard = performance.now() - NewsLasts;
    again();
  }
  const now = nowAtPlayer();
  if (now === null) return;
  if (live) setText(at("clock"), clockText(now));
  const until = state && state.now ? moment(state.now.to) : null;
  setText(at("now-left"), !live || until === null || until < now ? "" : `${duration(until - now)} left`);
  showStaleLights();
}

// ---- state

const LightWords = { playing: "Playing", idle: "Idle", trouble: "Trouble", off: "Off" };

function showCause(id, needed, cause, text) {
  const box = at(id);
  box.className = cause.ok === false ? "bad" : needed ? "good" : "";
  const since = cause.ok === false && cause.since ? ` – since ${when(cause.since)}` : "";
  setText(box.querySelector("dd"), text + since);
}

function playerText(player) {
  if (!player.running) return "not running";
  if (player.answers === false) return "does not answer";
  if (player.ok === false && player.lastError) return `says: ${player.lastError.text}`;
  if (player.shuttingDown) return "shutting down after its show";
  if (player.initialised === false) return "starting";
  return player.playing && player.playing.length > 0 ? "plays" : "runs, nothing to play";
}

function packetsText(packets) {
  if (packets.needed && packets.watched === false) return packets.trouble || "cannot be heard here";
  const count = (packets.universes || []).reduce((sum, one) => sum + one.perSecond, 0);
  const universes = (packets.universes || []).length;
  if (packets.needed && !packets.seen) return "missing in the last second";
  if (universes === 0) return packets.needed ? "none seen" : "none needed";
  return `${count} a second in ${universes} universe${universes === 1 ? "" : "s"}`;
}

function soundText(sound) {
  if (!sound.needed) return "none needed";
  if (!sound.moving) return "stands still";
  const position = typeof sound.position === "number" ? `, ${duration(sound.position * 1000)}` : "";
  return `moves${position}${sound.by === "lights" ? " (by the lights, which follow it)" : ""}`;
}

function showLight() {
  const light = LightWords[state.light] ? state.light : "off";
  const since = state.since ? `since ${when(state.since)}` : "";
  at("light-card").className = `card light ${live ? light : "old"}`;
  setText(at("light-word"), live ? LightWords[light] : "Unknown");
  setText(at("light-since"), live ? since : `last heard at ${when(state.time)}: ${LightWords[light]} ${since}`);
  setList(at("why"), state.why || []);
  document.title = `${live ? LightWords[light] : "Unknown"} – Show`;
  const player = state.player || {};
  const packets = state.packets || {};
  const sound = state.sound || {};
  showCause("cause-player", player.running, player, playerText(player));
  showCause("cause-packets", packets.needed, packets, packetsText(packets));
  showCause("cause-sound", sound.needed, sound, soundText(sound));
}

function span(event) {
  if (!event) return "";
  const parts = [];
  if (event.from) parts.push(`from ${when(event.from)}`);
  if (event.to) parts.push(`until ${when(event.to)}`);
  if (event.schedule) parts.push({ week: "weekly", year: "dated", demand: "on demand" }[event.schedule] || event.schedule);
  return parts.join(", ");
}

function showShows() {
  setText(at("now-show"), state.now ? state.now.show : "Nothing");
  setText(at("now-times"), span(state.now));
  setText(at("next-show"), state.next ? state.next.show : "Nothing");
  setText(at("next-times"), span(state.next));
  const player = state.player || {};
  const playing = (player.playing || []).map((one) => (one.play ? `${one.play}: ${one.file}` : one.file));
  if (player.media) playing.push(`Sound: ${player.media.split(/[\\/]/).pop()}`);
  setList(at("playing"), playing);
  setText(at("link"), player.link ? "Turn the link off" : "Turn the link on");
}

function showState(next) {
  // The same moment again is no news: whoever says it stands still.
  const news = state === null || next.time !== state.time;
  state = next;
  const said = moment(state.time);
  if (news && said !== null) playerTime = { said, heard: performance.now() };
  if (news) connected(true);
  showLight();
  showShows();
  tick();
}

// ---- lines

function lineElement(line) {
  const kind = line.level >= ErrorLevel ? "error" : line.level === 2 ? "warning" : "";
  const element = make("li", undefined, kind);
  element.append(make("time", String(line.time || "").slice(11) || line.time));
  if (kind === "error") element.append(make("span", "Error: ", "unseen"));
  element.append(make("bdi", line.text));
  if (line.count > 1) element.append(make("span", `${line.count} times`, "count"));
  return element;
}

const isError = (line) => line.level >= ErrorLevel;

function showLines() {
  const errors = lines.filter(isError).slice(-MostErrors).reverse();
  at("errors").replaceChildren(...errors.map(lineElement));
  at("errors").hidden = at("errors-title").hidden = errors.length === 0;
  const only = at("only-errors").checked;
  at("lines").replaceChildren(...lines.slice().reverse().filter((line) => !only || isError(line)).map(lineElement));
  reachable(at("errors"));
  reachable(at("lines"));
}

/** A list that has to be scrolled can be reached by the keyboard. */
function reachable(list) {
  if (list.scrollHeight > list.clientHeight) list.tabIndex = 0;
  else list.removeAttribute("tabindex");
}

/** A line has a number; it comes again with the same one when its count has grown. */
function addLine(line) {
  const place = lines.findLastIndex((one) => one.number <= line.number);
  if (place >= 0 && lines[place].number === line.number) {
    if (line.count > lines[place].count) lines[place] = line;
  } else {
    lines.splice(place + 1, 0, line);
  }
  lines = lines.slice(-MostLines);
  if (!linesAreDue) {
    linesAreDue = true;
    requestAnimationFrame(() => {
      linesAreDue = false;
      showLines();
    });
  }
}
let linesAreDue = false;

let linesCome = []; // as events, over this connection: those that came while all are on their way are not in them

async function loadLines() {
  lines = await ask(`/api/lines?most=${MostLines}`);
  const newest = lines.length > 0 ? lines[lines.length - 1].number : 0;
  linesCome.filter((line) => line.number >= newest).forEach(addLine);
  showLines();
}

// ---- lights: 512 channels of a universe as 32 by 16 cells

const universes = new Map();
const Across = 32;
const StaleAfter = 2000;

function universeOf(light) {
  const key = `${light.protocol} ${light.universe}`;
  let one = universes.get(key);
  if (!one) {
    const item = make("li");
    const canvas = make("canvas");
    canvas.width = Across;
    canvas.height = 512 / Across;
    canvas.setAttribute("role", "img");
    const title = make("p", "", "small");
    item.append(title, canvas);
    item.dataset.order = String(light.universe).padStart(6, "0") + light.protocol;
    const after = [...at("lights").children].find((other) => other.dataset.order > item.dataset.order);
    at("lights").insertBefore(item, after || null);
    one = { item, canvas, title, context: canvas.getContext("2d", { willReadFrequently: true }), told: -Infinity, seen: 0 };
    universes.set(key, one);
    at("lights-none").hidden = true;
  }
  return one;
}

function showLights(light) {
  const one = universeOf(light);
  const slots = atob(light.slots || "");
  const picture = one.context.createImageData(Across, 512 / Across);
  let lit = 0;
  for (let i = 0; i < 512; i++) {
    const level = i < slots.length ? slots.charCodeAt(i) : 0;
    if (level > 0) lit++;
    picture.data[i * 4] = level;
    picture.data[i * 4 + 1] = level * 0.85;
    picture.data[i * 4 + 2] = level * 0.55;
    picture.data[i * 4 + 3] = 255;
  }
  one.context.putImageData(picture, 0, 0);
  one.seen = performance.now();
  one.lit = lit;
  one.item.classList.remove("stale");
  if (one.seen - one.told >= 1000) tellLights(one, light);
}

/** Words beside the picture, once a second: who hears them cannot follow more. */
function tellLights(one, light) {
  one.told = one.seen;
  const name = light.protocol === "artnet" ? "Art-Net" : "sACN";
  setText(one.title, `${light.universe} · ${name} · ${one.lit} lit`);
  one.canvas.setAttribute("aria-label", `Universe ${light.universe}, ${name}: ${one.lit} of 512 channels lit`);
}

function showStaleLights() {
  const now = performance.now();
  for (const one of universes.values()) one.item.classList.toggle("stale", now - one.seen > StaleAfter);
}

// ---- shows, week, history

let shows = [];

function showShowNames() {
  const filter = at("filter").value.toLowerCase();
  const chosen = at("show").value;
  const names = shows.filter((name) => name.toLowerCase().includes(filter));
  at("show").replaceChildren(
    ...names.map((name) => {
      const option = make("option", name);
      option.value = name;
      return option;
    }),
  );
  if (names.includes(chosen)) at("show").value = chosen;
  at("show").disabled = at("play-button").disabled = names.length === 0;
  if (names.length === 0) at("show").append(make("option", shows.length === 0 ? "There are no shows" : "No show has that in its name"));
}

async function loadShows() {
  shows = await ask("/api/shows");
  at("filter").hidden = shows.length <= 15;
  showShowNames();
}

async function loadWeek() {
  const answer = await fetch("/api/week");
  if (!answer.ok) return;
  const text = await answer.text();
  at("week").src = `/api/week?at=${Date.now()}`;
  // The picture's own words; a parsed document runs nothing.
  const parsed = new DOMParser().parseFromString(text, "image/svg+xml");
  const words = [...parsed.querySelectorAll("rect > title")].map((title) => title.textContent).filter((title) => title !== "");
  setList(at("week-list"), words.length > 0 ? words : ["Nothing is scheduled."]);
}

async function loadHistory() {
  const evenings = await ask("/api/history");
  const texts = evenings
    .slice(-60)
    .reverse()
    .map((one) => {
      const errors = (one.errors || []).length;
      const songs = (one.songs || []).length;
      const until = one.to ? ` to ${one.to.slice(11, 16)}` : " until now";
      return (
        `${String(one.from).slice(0, 16)}${until}: ${one.show}, ${songs} song${songs === 1 ? "" : "s"}` +
        (errors > 0 ? `, ${errors} error${errors === 1 ? "" : "s"}` : "") +
        (one.broken ? ", broken off" : "")
      );
    });
  setList(at("history"), texts.length > 0 ? texts : ["None yet."]);
}

// ---- buttons

function say(answer) {
  at("answer").className = answer.ok ? "" : "refused";
  setText(at("answer"), answer.text || answer.error || (answer.ok ? "Done." : "This was not done."));
}

async function act(button, body) {
  button.setAttribute("aria-busy", "true");
  setText(at("answer"), "");
  try {
    const answer = await change("/api/do", body);
    if (!answer.ask) say(answer);
    return answer;
  } catch {
    say({ ok: false, error: "The server does not answer." });
    return {};
  } finally {
    button.removeAttribute("aria-busy");
  }
}

/** One question in the dialog: whether the answer was to go on. */
function sure(text, yes) {
  setText(at("sure-text"), text);
  setText(at("sure-yes"), yes);
  const dialog = at("sure");
  dialog.returnValue = "no";
  dialog.showModal();
  at("sure-no").focus();
  return new Promise((resolve) => {
    dialog.addEventListener("close", () => resolve(dialog.returnValue === "yes"), { once: true });
  });
}

async function stop() {
  const first = await act(at("stop"), { action: "stop" });
  if (!first.again) return;
  if (!(await sure(first.ask, "Go on"))) return;
  if (!(await sure("Really stop it? It has to be started again by hand or by the machine.", "Stop the player"))) return;
  await act(at("stop"), { action: "stop", again: first.again });
}

function listen() {
  at("play").addEventListener("submit", (event) => {
    event.preventDefault();
    act(at("play-button"), { action: "play", show: at("show").value, seconds: Number(at("minutes").value) * 60 });
  });
  at("filter").addEventListener("input", showShowNames);
  at("clear").addEventListener("click", () => act(at("clear"), { action: "clear" }));
  at("reload").addEventListener("click", async () => {
    await act(at("reload"), { action: "reload" });
    refresh();
  });
  at("link").addEventListener("click", () => {
    const on = state && state.player && state.player.link;
    act(at("link"), { action: on ? "link off" : "link on" });
  });
  at("stop").addEventListener("click", stop);
  at("only-errors").addEventListener("change", showLines);
  at("login").addEventListener("submit", logIn);
  at("logout").addEventListener("click", async () => {
    await change("/api/logout", {});
    location.reload();
  });
  at("history-box").addEventListener("toggle", () => at("history-box").open && loadHistory().catch(() => {}));
}

async function logIn(event) {
  event.preventDefault();
  const answer = await change("/api/login", { password: at("password").value });
  setText(at("login-answer"), answer.ok ? "" : answer.error || "The server does not answer.");
  at("password").value = "";
  if (!answer.ok) return at("password").focus();
  if (await meet()) begin();
  at("main").focus();
}

// ---- staying live

function connected(good) {
  live = good;
  at("line-state").className = good ? "link-state" : "link-state lost";
  setText(at("line-state"), good ? "live" : "no news from the server; what you see is old");
  if (!good && state) {
    showLight();
    setText(at("now-left"), "");
  }
}

function refresh() {
  for (const load of [loadShows, loadWeek]) load().catch(() => {});
}

function follow() {
  if (events) events.close();
  events = new EventSource("/api/events");
  // What was written while there was no connection came to nobody.
  events.addEventListener("open", () => {
    linesCome = [];
    loadLines().catch(() => {});
  });
  events.addEventListener("state", (event) => showState(JSON.parse(event.data)));
  events.addEventListener("line", (event) => {
    const line = JSON.parse(event.data);
    linesCome = [...linesCome.slice(-MostLines), line];
    addLine(line);
  });
  events.addEventListener("lights", (event) => showLights(JSON.parse(event.data)));
  events.addEventListener("lost", () => loadLines().catch(() => {}));
  events.addEventListener("error", () => {
    connected(false);
    if (events.readyState === EventSource.CLOSED) tryLater(); // else it tries again by itself
  });
}

/** The server refused: it was started anew, or the session is over, or too many pages are open. */
async function again() {
  try {
    if (await meet()) begin();
  } catch {
    tryLater();
  }
}

let later = 0;
function tryLater() {
  clearTimeout(later);
  later = setTimeout(again, 5000);
}

function begin() {
  refresh();
  follow();
}

listen();
setInterval(tick, 1000);
// The week moves on; the shows on disk may have changed.
setInterval(() => role !== "none" && refresh(), 10 * 60 * 1000);
meet().then((in_) => in_ && begin()).catch(tryLater);
