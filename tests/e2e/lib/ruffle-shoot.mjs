#!/usr/bin/env node
// Plays a movie in Ruffle (the self-hosted npm build) inside Debian's headless
// Chromium, takes screenshots at chosen movie times and probes pixels.
//
// Usage:
//   node tests/e2e/lib/ruffle-shoot.mjs --movie M.swf --size 320x240 --times 120,210,450 \
//        [--probe X,Y]... [--out DIR] [--name NAME] [--wallclock] [--network] [--timeout-ms 60000]
//        [--watch X,Y]...
//
//   --movie     the movie to play
//   --size      the stage in pixels (the viewport, device pixel ratio 1)
//   --times     movie times in milliseconds, counted from the moment the player
//               reported `loadedmetadata`; one screenshot per time, in order
//   --probe     a pixel to read in every screenshot (repeatable)
//   --out       folder for the results (default: a folder beside the movie named NAME-shots)
//   --name      prefix of the written files (default: the movie's base name)
//   --network   let the movie load files from its own folder (served beside it), e.g.
//               pictures it loads at play time; without it the movie has no network
//   --wallclock real time instead of the virtual animation clock (movies paced by stream
//               sound); expect +-1 frame then
//   --settle-ms real time to wait after loading, with the virtual clock stopped (default 200)
//   --watch     with --wallclock: a pixel read after every frame the player draws
//               (repeatable); each change of its colour is written with its real time
//   --click     T or T@X,Y: a mouse click at movie time T (ms), at X,Y (default the middle
//               of the stage), after the screenshot of that time if there is one (repeatable)
//
// Writes:
//   OUT/NAME-<time>ms.png  one screenshot per time
//   OUT/NAME.json          {"movie", "size", "shots": [{"time", "png", "pixels": {"X,Y": [r,g,b,a]}}],
//                           "errors": [...], "console": [...],
//                           "watch": {"X,Y": [[time, [r,g,b,a]], ...]}}  (with --watch; times in ms
//                           after `loadedmetadata`, the first entry the first frame drawn)
//   "errors" holds Ruffle's own error lines (logged through console.log with an
//   "ERROR" level prefix), console.error messages, page errors and failed requests.
// Exit status: 0 when every shot was taken (errors are for the caller to judge),
// 1 when the movie could not be played at all, 2 on wrong usage.
//
// Timing: the page's animation frames run on a virtual clock (see FRAME_DRIVER) that
// stands still while Ruffle loads and is then advanced in 16 ms animation frames to
// each requested time (times are effectively rounded down to a multiple of 16). Frame
// n (1-based) of a movie at `fps` is on screen from 16*ceil(n*1000/fps/16) ms until
// frame n+1's time: at 12 fps frames 1, 2, 3, 4 appear at 96, 176, 256, 336 ms. Before
// frame 1 the stage is blank white. The same times give the same pictures run after
// run, however busy the machine is; the middle of a frame, (n + 0.5) * 1000 / fps, is
// the safe choice.
//
// Example (from a bash test):
//   node "$QUILLET_SOURCE_DIR/tests/e2e/lib/ruffle-shoot.mjs" --movie "$out/shapes.swf" \
//        --size 320x240 --times 120 --probe 70,60 --out "$out"
//   /usr/bin/python3 "$QUILLET_SOURCE_DIR/tests/e2e/lib/expect_pixels.py" "$out/shapes.json" \
//        "120 70,60 255,0,0 0"

import { createServer } from "node:http";
import { readFile, mkdir, writeFile } from "node:fs/promises";
import path from "node:path";
import { fileURLToPath } from "node:url";
import { createRequire } from "node:module";

const here = path.dirname(fileURLToPath(import.meta.url));
const root = path.resolve(here, "../../..");
const require = createRequire(path.join(root, "package.json"));

function usage(message) {
  process.stderr.write(`ruffle-shoot: ${message}\n` +
    "usage: ruffle-shoot.mjs --movie M.swf --size WxH --times T1,T2 [--probe X,Y]... [--out DIR] [--name NAME] [--wallclock] [--network]\n");
  process.exit(2);
}

function parseArgs(argv) {
  const opts = { probes: [], clicks: [], watches: [], wallclock: false, network: false, timeoutMs: 60000, settleMs: 200 };
  for (let i = 0; i < argv.length; i++) {
    const a = argv[i];
    const next = () => {
      if (i + 1 >= argv.length) usage(`${a} needs a value`);
      return argv[++i];
    };
    if (a === "--movie") opts.movie = next();
    else if (a === "--size") opts.size = next();
    else if (a === "--times") opts.times = next();
    else if (a === "--probe") opts.probes.push(next());
    else if (a === "--click") opts.clicks.push(next());
    else if (a === "--watch") opts.watches.push(next());
    else if (a === "--out") opts.out = next();
    else if (a === "--name") opts.name = next();
    else if (a === "--wallclock") opts.wallclock = true;
    else if (a === "--network") opts.network = true;
    else if (a === "--timeout-ms") opts.timeoutMs = Number(next());
    else if (a === "--settle-ms") opts.settleMs = Number(next());
    else usage(`unknown option ${a}`);
  }
  if (!opts.movie || !opts.size || !opts.times) usage("--movie, --size and --times are required");
  const m = /^(\d+)x(\d+)$/.exec(opts.size);
  if (!m) usage("--size must look like 320x240");
  opts.width = Number(m[1]);
  opts.height = Number(m[2]);
  opts.timeList = opts.times.split(",").map(Number);
  if (opts.timeList.some((t) => !Number.isFinite(t) || t < 0)) usage("--times must be non-negative numbers");
  opts.probeList = opts.probes.map((p) => {
    const q = /^(\d+),(\d+)$/.exec(p);
    if (!q) usage(`bad probe ${p} (want X,Y)`);
    return [Number(q[1]), Number(q[2])];
  });
  opts.watchList = opts.watches.map((p) => {
    const q = /^(\d+),(\d+)$/.exec(p);
    if (!q) usage(`bad watch ${p} (want X,Y)`);
    return [Number(q[1]), Number(q[2])];
  });
  if (opts.watchList.length && !opts.wallclock) usage("--watch needs --wallclock");
  opts.clickList = opts.clicks.map((c) => {
    const q = /^(\d+)(?:@(\d+),(\d+))?$/.exec(c);
    if (!q) usage(`bad click ${c} (want T or T@X,Y)`);
    return { time: Number(q[1]), x: q[2] === undefined ? opts.width / 2 : Number(q[2]),
      y: q[3] === undefined ? opts.height / 2 : Number(q[3]) };
  });
  opts.name = opts.name || path.basename(opts.movie).replace(/\.[^.]*$/, "");
  opts.out = opts.out || path.join(path.dirname(opts.movie), `${opts.name}-shots`);
  return opts;
}

// Replaces the page's animation frames and performance clock by a virtual clock
// that stands still until the harness advances it, 16 ms per animation frame.
// Ruffle paces its timeline by animation-frame timestamps, so the frames a movie
// shows at a given virtual time do not depend on how long loading took or on how
// busy the machine is. Ordinary timers (used while loading) keep real time.
// Files a movie fetches while it plays (pictures loaded into clips) arrive
// within the frame that asked for them: the clock waits for every request in
// flight, and for the player's work on the response, before the next frame.
const FRAME_DRIVER = `(() => {
  let now = 0;
  let queue = [];
  let nextId = 1;
  let inFlight = 0;
  const realFetch = window.fetch.bind(window);
  window.fetch = (...args) => {
    inFlight++;
    return realFetch(...args).then((response) => {
      // The player reads the body afterwards: count the request until it has.
      let counted = true;
      const done = () => { if (counted) { counted = false; inFlight--; } };
      for (const method of ["arrayBuffer", "blob", "text", "json"]) {
        const original = response[method].bind(response);
        response[method] = () => original().finally(done);
      }
      // A body read some other way (or never) stops counting after two seconds.
      setTimeout(done, 2000);
      return response;
    }, (e) => { inFlight--; throw e; });
  };
  const turn = () => new Promise((resolve) => setTimeout(resolve, 0));
  window.requestAnimationFrame = (callback) => { const id = nextId++; queue.push({ id, callback }); return id; };
  window.cancelAnimationFrame = (id) => { queue = queue.filter((e) => e.id !== id); };
  performance.now = () => now;
  window.__quilletAdvanceTo = async (time) => {
    while (now + 16 <= time) {
      now += 16;
      const due = queue;
      queue = [];
      for (const e of due) {
        try { e.callback(now); } catch (err) { console.error(String(err && err.stack || err)); }
      }
      // Requests the frame made start from the player's queued tasks.
      for (let i = 0; i < 3; i++) await Promise.resolve();
      if (inFlight > 0) {
        while (inFlight > 0) await turn();
        for (let i = 0; i < 4; i++) await turn();
      }
    }
    return now;
  };
})();`;

// On the real clock: after each animation frame, reads the watched pixels from
// the player's canvas (which still holds what it drew in that task; a turn without
// drawing reads as cleared and is skipped) and notes every change of colour with
// its time after `loadedmetadata`.
const PIXEL_WATCH = (points) => `(() => {
  const points = ${JSON.stringify(points)};
  const changes = {};
  for (const [x, y] of points) changes[x + "," + y] = [];
  window.__quilletWatch = changes;
  let scratch = null;
  const realRaf = window.requestAnimationFrame.bind(window);
  const sample = () => {
    const canvas = document.getElementById("stage")?.shadowRoot?.querySelector("canvas");
    if (!canvas || !canvas.width || window.__loadedAt === undefined) return;
    scratch = scratch || new OffscreenCanvas(1, 1).getContext("2d", { willReadFrequently: true });
    const t = Math.round(performance.now() - window.__loadedAt);
    for (const [x, y] of points) {
      scratch.clearRect(0, 0, 1, 1);
      scratch.drawImage(canvas, x, y, 1, 1, 0, 0, 1, 1);
      const d = Array.from(scratch.getImageData(0, 0, 1, 1).data);
      // A turn in which the player drew nothing reads as cleared (alpha 0).
      if (d[3] === 0) continue;
      const list = changes[x + "," + y];
      const last = list.length ? list[list.length - 1][1] : null;
      if (!last || last.some((v, i) => v !== d[i])) list.push([t, d]);
    }
  };
  window.requestAnimationFrame = (callback) => realRaf((time) => {
    callback(time);
    try { sample(); } catch (e) { console.error("watch: " + e); }
  });
})();`;

const MIME = {
  ".js": "text/javascript",
  ".wasm": "application/wasm",
  ".swf": "application/x-shockwave-flash",
  ".html": "text/html",
  ".jpg": "image/jpeg",
  ".jpeg": "image/jpeg",
  ".png": "image/png",
  ".gif": "image/gif",
  ".map": "application/json",
};

function page(width, height, network) {
  // Ruffle's test configuration: plays at once, no overlays, no splash screen,
  // no letterboxing and no network access for the movie.
  return `<!doctype html>
<html><head><meta charset="utf-8">
<style>html,body{margin:0;padding:0;overflow:hidden;background:#fff}
#stage{width:${width}px;height:${height}px}</style>
<script>
window.RufflePlayer = window.RufflePlayer || {};
window.RufflePlayer.config = {
  autoplay: "on", unmuteOverlay: "hidden", splashScreen: false, letterbox: "off",
  contextMenu: "off", allowNetworking: "${network ? "all" : "none"}", logLevel: "warn",
  warnOnUnsupportedContent: false, publicPath: "/ruffle/"
};
window.__loaded = new Promise((resolve, reject) => { window.__resolveLoaded = resolve; window.__rejectLoaded = reject; });
window.addEventListener("DOMContentLoaded", () => {
  const player = window.RufflePlayer.newest().createPlayer();
  player.id = "stage";
  player.style.width = "${width}px";
  player.style.height = "${height}px";
  player.addEventListener("loadedmetadata", () => { window.__loadedAt = performance.now(); window.__resolveLoaded(true); });
  document.body.appendChild(player);
  player.ruffle().load({ url: "/movie.swf" }).catch((e) => window.__rejectLoaded(String(e)));
});
</script>
<script src="/ruffle/ruffle.js"></script>
</head><body></body></html>`;
}

async function serve(moviePath, width, height, missing, network) {
  const movieDir = path.dirname(moviePath);
  const ruffleDir = path.dirname(require.resolve("@ruffle-rs/ruffle/ruffle.js"));
  const server = createServer(async (req, res) => {
    try {
      const url = new URL(req.url, "http://127.0.0.1");
      let file;
      if (url.pathname === "/favicon.ico") {
        res.writeHead(204);
        res.end();
        return;
      }
      if (url.pathname === "/" || url.pathname === "/index.html") {
        res.writeHead(200, { "content-type": "text/html" });
        res.end(page(width, height, network));
        return;
      } else if (url.pathname === "/movie.swf") {
        file = moviePath;
      } else if (url.pathname.startsWith("/ruffle/")) {
        const name = path.basename(url.pathname);
        file = path.join(ruffleDir, name);
      } else if (network && !path.relative(movieDir, path.join(movieDir, decodeURIComponent(url.pathname))).startsWith("..")) {
        file = path.join(movieDir, decodeURIComponent(url.pathname));
      } else {
        missing.push(url.pathname);
        res.writeHead(404);
        res.end();
        return;
      }
      const body = await readFile(file);
      res.writeHead(200, { "content-type": MIME[path.extname(file)] || "application/octet-stream" });
      res.end(body);
    } catch {
      missing.push(req.url);
      res.writeHead(404);
      res.end();
    }
  });
  await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
  return server;
}

// Reads pixels out of a PNG screenshot inside the page (the browser decodes it).
async function probe(pageHandle, png, points) {
  if (points.length === 0) return {};
  return pageHandle.evaluate(async ({ data, pts }) => {
    const bytes = Uint8Array.from(atob(data), (c) => c.charCodeAt(0));
    const bitmap = await createImageBitmap(new Blob([bytes], { type: "image/png" }));
    const canvas = new OffscreenCanvas(bitmap.width, bitmap.height);
    const ctx = canvas.getContext("2d");
    ctx.drawImage(bitmap, 0, 0);
    const out = {};
    for (const [x, y] of pts) {
      const d = ctx.getImageData(x, y, 1, 1).data;
      out[`${x},${y}`] = [d[0], d[1], d[2], d[3]];
    }
    return out;
  }, { data: png.toString("base64"), pts: points });
}

async function main() {
  const opts = parseArgs(process.argv.slice(2));
  await mkdir(opts.out, { recursive: true });
  const { chromium } = require("playwright-core");
  const errors = [];
  const missing = [];
  const server = await serve(path.resolve(opts.movie), opts.width, opts.height, missing, opts.network);
  const port = server.address().port;
  const consoleLines = [];
  const browser = await chromium.launch({
    executablePath: "/usr/bin/chromium",
    headless: true,
    args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
      "--disable-component-update", "--disable-sync", "--autoplay-policy=no-user-gesture-required"],
  });
  let status = 0;
  try {
    const context = await browser.newContext({ viewport: { width: opts.width, height: opts.height }, deviceScaleFactor: 1 });
    const pg = await context.newPage();
    pg.on("console", (msg) => {
      // Drop the console styling that Ruffle's log lines carry ("%c" and the CSS after them).
      const text = msg.text().replace(/%c/g, "").replace(/\s+(color|background|font-style):.*$/, "");
      consoleLines.push(`${msg.type()}: ${text}`);
      // Ruffle prints its own log lines as "ERROR file:line message" through console.log.
      if (msg.type() === "error" || /^\s*ERROR\b/.test(text)) errors.push(text);
    });
    pg.on("pageerror", (e) => errors.push(`page error: ${e.message}`));
    pg.on("requestfailed", (r) => errors.push(`request failed: ${r.url()}`));
    if (!opts.wallclock) await pg.addInitScript(FRAME_DRIVER);
    if (opts.watchList.length) await pg.addInitScript(PIXEL_WATCH(opts.watchList));
    await pg.goto(`http://127.0.0.1:${port}/`);
    const loaded = await Promise.race([
      pg.evaluate(() => window.__loaded),
      new Promise((_, reject) => setTimeout(() => reject(new Error("timed out waiting for loadedmetadata")), opts.timeoutMs)),
    ]);
    if (loaded !== true) throw new Error("the player did not load the movie");
    // Let the player finish what it does without timers (decompressing, decoding
    // bitmaps) while its clock stands still, so the first frames do not depend on
    // how busy the machine is.
    await new Promise((r) => setTimeout(r, opts.settleMs));
    const shots = [];
    const wallStart = Date.now();
    // Shots and clicks in time order; a click comes after the shot of its time.
    const events = [...opts.timeList.map((time) => ({ time, shot: true })), ...opts.clickList]
      .sort((a, b) => a.time - b.time || (a.shot ? -1 : 0) - (b.shot ? -1 : 0));
    for (const event of events) {
      const time = event.time;
      if (opts.wallclock) {
        const wait = time - (Date.now() - wallStart);
        if (wait > 0) await new Promise((r) => setTimeout(r, wait));
      } else {
        await pg.evaluate((t) => window.__quilletAdvanceTo(t), time);
      }
      if (!event.shot) {
        // On a software renderer the player opens a hardware-acceleration notice
        // on the first mouse-over; it would cover the stage and take the click.
        await pg.mouse.move(event.x, event.y);
        await pg.evaluate(() => {
          const modal = document.getElementById("stage")?.shadowRoot?.getElementById("hardware-acceleration-modal");
          if (modal) modal.classList.add("hidden");
        });
        await pg.mouse.click(event.x, event.y);
        continue;
      }
      const png = await pg.screenshot({ type: "png" });
      const file = path.join(opts.out, `${opts.name}-${time}ms.png`);
      await writeFile(file, png);
      shots.push({ time, png: file, pixels: await probe(pg, png, opts.probeList) });
    }
    const watch = opts.watchList.length ? await pg.evaluate(() => window.__quilletWatch) : undefined;
    await context.close();
    for (const m of missing) errors.push(`not found: ${m}`);
    await writeFile(path.join(opts.out, `${opts.name}.json`), JSON.stringify({
      movie: path.resolve(opts.movie), size: [opts.width, opts.height], shots, errors, console: consoleLines, watch,
    }, null, 1));
  } catch (e) {
    status = 1;
    process.stderr.write(`ruffle-shoot: ${opts.movie}: ${e.message}\n`);
    await writeFile(path.join(opts.out, `${opts.name}.json`), JSON.stringify({
      movie: path.resolve(opts.movie), size: [opts.width, opts.height], shots: [], errors: [...errors, e.message],
      console: consoleLines,
    }, null, 1));
  } finally {
    await browser.close();
    server.close();
  }
  process.exit(status);
}

main();
