#!/usr/bin/env node
// Opens a published page (served from its own folder) in Debian's headless
// Chromium, waits until the Ruffle player on it has loaded its movie, then
// takes screenshots at chosen real times after that and probes pixels.
//
// Usage:
//   node tests/e2e/lib/page-shoot.mjs --page DIR/show-ruffle.html --size 320x240 --times 500,1500 \
//        [--probe X,Y]... [--out DIR] [--name NAME] [--timeout-ms 60000]
//
// Writes OUT/NAME-<time>ms.png and OUT/NAME.json in the form ruffle-shoot.mjs
// writes (so expect_pixels.py reads it): {"page", "size", "shots": [{"time",
// "png", "pixels"}], "errors", "console"}. Times are wall-clock milliseconds
// after the movie loaded, so pick moments well inside a still picture.
// Exit status: 0 when every shot was taken, 1 when the page never played its
// movie, 2 on wrong usage.

import { createServer } from "node:http";
import { readFile, mkdir, writeFile } from "node:fs/promises";
import path from "node:path";
import { fileURLToPath } from "node:url";
import { createRequire } from "node:module";

const here = path.dirname(fileURLToPath(import.meta.url));
const require = createRequire(path.join(path.resolve(here, "../../.."), "package.json"));

function usage(message) {
  process.stderr.write(`page-shoot: ${message}\n`);
  process.exit(2);
}

const opts = { probes: [], timeoutMs: 60000 };
const argv = process.argv.slice(2);
for (let i = 0; i < argv.length; i++) {
  const a = argv[i];
  const next = () => (i + 1 < argv.length ? argv[++i] : usage(`${a} needs a value`));
  if (a === "--page") opts.page = next();
  else if (a === "--size") opts.size = next();
  else if (a === "--times") opts.times = next();
  else if (a === "--probe") opts.probes.push(next());
  else if (a === "--out") opts.out = next();
  else if (a === "--name") opts.name = next();
  else if (a === "--timeout-ms") opts.timeoutMs = Number(next());
  else usage(`unknown option ${a}`);
}
if (!opts.page || !opts.size || !opts.times) usage("--page, --size and --times are required");
const [, width, height] = (/^(\d+)x(\d+)$/.exec(opts.size) || usage("--size must look like 320x240")).map(Number);
const times = opts.times.split(",").map(Number);
const probes = opts.probes.map((p) => (/^(\d+),(\d+)$/.exec(p) || usage(`bad probe ${p}`)).slice(1).map(Number));
opts.name = opts.name || path.basename(opts.page).replace(/\.[^.]*$/, "");
opts.out = opts.out || path.join(path.dirname(opts.page), `${opts.name}-shots`);

const MIME = { ".js": "text/javascript", ".wasm": "application/wasm", ".swf": "application/x-shockwave-flash",
  ".html": "text/html" };
const root = path.resolve(path.dirname(opts.page));
const missing = [];
const server = createServer(async (req, res) => {
  const name = decodeURIComponent(new URL(req.url, "http://127.0.0.1").pathname);
  const file = path.join(root, name);
  if (path.relative(root, file).startsWith("..")) { res.writeHead(403); res.end(); return; }
  try {
    const body = await readFile(file);
    res.writeHead(200, { "content-type": MIME[path.extname(file)] || "application/octet-stream" });
    res.end(body);
  } catch {
    if (name !== "/favicon.ico") missing.push(name);
    res.writeHead(404);
    res.end();
  }
});
await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));

await mkdir(opts.out, { recursive: true });
const { chromium } = require("playwright-core");
const browser = await chromium.launch({
  executablePath: "/usr/bin/chromium", headless: true,
  args: ["--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-background-networking",
    "--disable-component-update", "--disable-sync", "--autoplay-policy=no-user-gesture-required"],
});
const errors = [];
const consoleLines = [];
const shots = [];
let status = 0;
try {
  const context = await browser.newContext({ viewport: { width, height }, deviceScaleFactor: 1 });
  const pg = await context.newPage();
  pg.on("console", (msg) => {
    const text = msg.text().replace(/%c/g, "").replace(/\s+(color|background|font-style):.*$/, "");
    consoleLines.push(`${msg.type()}: ${text}`);
    // Missing files are reported by name below, not as the console's bare lines.
    if (/^Failed to load resource/.test(text)) return;
    if (msg.type() === "error" || /^\s*ERROR\b/.test(text)) errors.push(text);
  });
  pg.on("pageerror", (e) => errors.push(`page error: ${e.message}`));
  await pg.goto(`http://127.0.0.1:${server.address().port}/${encodeURIComponent(path.basename(opts.page))}`);
  // The polyfill replaces the page's embed by a player element; it has loaded
  // the movie once it knows the movie's metadata.
  await pg.waitForFunction(() => {
    const player = document.querySelector("ruffle-embed, ruffle-object, ruffle-player");
    if (!player) return false;
    const api = typeof player.ruffle === "function" ? player.ruffle() : player;
    return Boolean(api && api.metadata);
  }, null, { timeout: opts.timeoutMs, polling: 20 });
  const start = Date.now();
  for (const time of times) {
    const wait = time - (Date.now() - start);
    if (wait > 0) await new Promise((r) => setTimeout(r, wait));
    const png = await pg.screenshot({ type: "png" });
    const file = path.join(opts.out, `${opts.name}-${time}ms.png`);
    await writeFile(file, png);
    const pixels = await pg.evaluate(async ({ data, pts }) => {
      const bytes = Uint8Array.from(atob(data), (c) => c.charCodeAt(0));
      const bitmap = await createImageBitmap(new Blob([bytes], { type: "image/png" }));
      const canvas = new OffscreenCanvas(bitmap.width, bitmap.height);
      const ctx = canvas.getContext("2d");
      ctx.drawImage(bitmap, 0, 0);
      const out = {};
      for (const [x, y] of pts) out[`${x},${y}`] = Array.from(ctx.getImageData(x, y, 1, 1).data);
      return out;
    }, { data: png.toString("base64"), pts: probes });
    shots.push({ time, png: file, pixels });
  }
  await context.close();
} catch (e) {
  status = 1;
  errors.push(e.message);
  process.stderr.write(`page-shoot: ${opts.page}: ${e.message}\n`);
} finally {
  await browser.close();
  server.close();
}
for (const m of missing) errors.push(`not found: ${m}`);
await writeFile(path.join(opts.out, `${opts.name}.json`), JSON.stringify({
  page: path.resolve(opts.page), size: [width, height], shots, errors, console: consoleLines,
}, null, 1));
process.exit(status);
