// What a player could be saying.

export function playing(more = {}) {
  return {
    time: "2026-12-24 18:00:05", light: "playing", why: [], since: "2026-12-24 18:00:00",
    player: { running: true, initialised: true, answers: true, ok: true, since: null, show: "eve.shw",
      playing: [{ play: "Musical", file: "carol.vexseq" }, { play: "Background", file: "stars.vexseq" }],
      media: "carol.ogg", link: true, noSchedule: false, shuttingDown: false,
      started: "2026-12-24 17:00:00", lastError: null },
    now: { show: "eve.shw", from: "2026-12-24 18:00:00", to: "2026-12-24 22:00:00", schedule: "week", shuttingDown: false },
    next: { show: "christmas.shw", from: "2026-12-25 17:30:00", to: "2026-12-25 23:00:00", schedule: "year", shuttingDown: false },
    packets: { needed: true, watched: true, trouble: "", ok: true, since: null, seen: true,
      universes: [{ universe: 1, protocol: "sacn", perSecond: 40, last: 0.02 }, { universe: 2, protocol: "sacn", perSecond: 38, last: 0.01 }] },
    sound: { needed: true, ok: true, since: null, moving: true, by: "card", position: 12.5 },
    ...more,
  };
}

export function trouble() {
  const state = playing({ light: "trouble", since: "2026-12-24 18:00:03",
    why: ["no packets are seen of universe 1, since 2026-12-24 18:00:03", "the sound position stands still, since 2026-12-24 18:00:03"] });
  state.packets = { ...state.packets, ok: false, since: "2026-12-24 18:00:03", seen: false };
  state.sound = { ...state.sound, ok: false, since: "2026-12-24 18:00:03", moving: false };
  return state;
}

export function off() {
  return playing({ light: "off", why: [], now: null, next: null, since: "2026-12-24 17:59:00",
    player: { running: false, initialised: false, answers: false, ok: true, since: null, show: null, playing: [], media: null,
      link: false, noSchedule: false, shuttingDown: false, started: null, lastError: null },
    packets: { needed: false, watched: true, trouble: "", ok: true, since: null, seen: false, universes: [] },
    sound: { needed: false, ok: true, since: null, moving: false, by: "none", position: null } });
}

export const lines = [
  { time: "2026-12-24 17:59:58", level: 1, text: "Show Player initialized", count: 1 },
  { time: "2026-12-24 18:00:00", level: 1, text: "Starting show: eve.shw", count: 1 },
  { time: "2026-12-24 18:00:01", level: 3, text: "ERROR WITH SEQUENCE (File not found) Musical: snow.vexseq", count: 3 },
  { time: "2026-12-24 18:00:02", level: 1, text: "Starting Musical: carol.vexseq", count: 1 },
  { time: "2026-12-24 18:00:03", level: 0, text: "Checking sequences", count: 12 },
];

/** A universe in which a band of light has come to a place. */
export function lights(universe, place, protocol = "sacn") {
  const slots = Buffer.alloc(512);
  for (let i = 0; i < 512; i++) {
    const distance = Math.abs((i % 32) - place);
    slots[i] = distance < 6 ? 255 - distance * 40 : 0;
  }
  return { universe, protocol, slots: slots.toString("base64") };
}

export const manyShows = Array.from({ length: 500 }, (_, i) => `show number ${String(i + 1).padStart(3, "0")}.shw`);
