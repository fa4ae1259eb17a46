// The simulator's page in a real browser, with a real till selling beside it.
// usage: node --test page_test.mjs, with the programs' directory in PROGRAMS; PICTURES names a
// directory for pictures of the page.
import assert from 'node:assert/strict';
import {spawn} from 'node:child_process';
import {once} from 'node:events';
import {mkdtemp, readFile, rm, writeFile} from 'node:fs/promises';
import {createServer} from 'node:http';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {createInterface} from 'node:readline';
import {after, before, beforeEach, test} from 'node:test';
import {chromium} from 'playwright-core';

const programs = process.env.PROGRAMS;
const patience = 30_000;
const hostileName = '<img src=x onerror="document.title=`taken`"><b>Анна</b>';

let directory, simulator, till, browser, page;
let port = 0;

/// A program with line-based input and output.
class Program {
  constructor(name, ...options) {
    this.process = spawn(join(programs, name), options, {stdio: ['pipe', 'pipe', 'inherit']});
    this.lines = [];
    this.process.once('exit', () => { this.hasEnded = true; });
    createInterface({input: this.process.stdout}).on('line', line => {
      this.lines.push(line);
      this.last = line;
    });
  }

  type(...lines) {
    this.process.stdin.write(lines.map(line => `${line}\n`).join(''));
  }

  /// Returns the match of the first new line that fits.
  async says(pattern) {
    for (const end = Date.now() + patience; Date.now() < end && !this.hasEnded; await pause(20)) {
      while (this.lines.length) {
        const found = this.lines.shift().match(pattern);
        if (found) return found;
      }
    }
    throw new Error(`${this.process.spawnfile} does not say ${pattern}; last: ${this.last}`);
  }

  async end(signal) {
    if (this.hasEnded) return;
    this.process.kill(signal);
    await once(this.process, 'exit');
  }
}

const pause = milliseconds => new Promise(resolve => { setTimeout(resolve, milliseconds); });

/// Waits until the function, run in the page, returns true.
const shows = (what, argument) => page.waitForFunction(what, argument, {timeout: patience});
const showsText = (selector, text) => shows(
    ([where, part]) => [...document.querySelectorAll(where)].some(
        element => element.textContent.includes(part)), [selector, text]);

async function startSimulator() {
  simulator = new Program('simulator', '--port', String(port), '--state', join(directory, 'state'));
  port = Number((await simulator.says(/^listening on http:\/\/127\.0\.0\.1:(\d+)/))[1]);
}

const address = path => `http://127.0.0.1:${port}${path}`;
const orders = async () => (await (await fetch(address('/simulator/dump'))).json()).orders;

async function sell(code, ...more) {
  till.type(`add ${code} "Milk <i>3,2%</i>" 89.90 2`, ...more, 'commit');
  await till.says(/is closed/);
}

const faultSwitch = name => page.getByRole('switch', {name});
const isOn = async (name, on) => shows(
    ([wanted, state]) => [...document.querySelectorAll('[role=switch]')].some(
        button => button.textContent.startsWith(wanted) &&
                  button.getAttribute('aria-checked') === state),
    [name, String(on)]);

before(async () => {
  directory = await mkdtemp(join(tmpdir(), 'page-test-'));
  await startSimulator();
  const settings = join(directory, 'till.conf');
  await writeFile(settings, [
    `LmMindbox:url=${address('/v3/operations/sync')}`, 'LmMindbox:endpoint=till-demo',
    'LmMindbox:secretKey=demo-secret', 'LmMindbox:timeout=5', 'Till:shopCode=12', 'Till:cashCode=3',
    'Http:retryFirst=100', 'Till:language=en', `Till:dataDir=${join(directory, 'data')}`, ''].join('\n'), {mode: 0o600});
  till = new Program('till', '--config', settings);
  browser = await chromium.launch({
    executablePath: '/usr/bin/chromium',
    args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
           '--disable-background-networking', '--disable-component-update', '--disable-sync'],
  });
  page = await (await browser.newContext()).newPage();
  page.setDefaultTimeout(patience);
  await page.goto(address('/'));
  // A reloaded page loses this mark.
  await page.evaluate(() => { window.isFirst = true; });
});

beforeEach(() => shows(() => document.getElementById('connection').textContent === 'live'));

after(async () => {
  await browser?.close();
  till?.type('quit');
  await Promise.all([till?.end(), simulator?.end()]);
  await rm(directory, {recursive: true});
});

test('a sale appears with its lines, customer and status, without a reload', async () => {
  till.type('card 79160000001');
  await till.says(/Card \d/);
  await sell(4600, 'discount 1 9.80 15');
  await showsText('#orders li', 'Paid');
  const order = await page.locator('#orders li').first().innerText();
  const [known] = await orders();
  for (const part of [known.ids.externalOrderIdLm, '+79160000001', '4600', '2 × 89.90',
                      '170.00', 'discount 9.80 · promotion 15'])
    assert.ok(order.includes(part), `${part} in ${order}`);
  await showsText('#exchanges summary', 'CreateAuthorizedOrder');
  await showsText('#exchanges summary', '200 Processed');
  assert.ok(await page.evaluate(() => window.isFirst));
});

test('the code read from the page confirms a phone, and markup in a name stays text', async () => {
  till.type('card 9031234567', '1', '', hostileName, '05.03.1990', '1', 'i@example.org');
  const code = await page.locator('#codes li', {hasText: '79031234567'}).locator('.code').innerText();
  till.type(code);
  await till.says(/Card \d/);
  const customer = page.locator('#customers li', {hasText: '+79031234567'});
  await customer.getByText('phone ✓ confirmed').waitFor();
  assert.ok((await customer.innerText()).includes(hostileName));
  assert.equal(await page.locator('main img, main b:not(.code)').count(), 0);
  assert.equal(await page.title(), 'Loyalty service, simulated');
  await assert.rejects(page.evaluate(() => { document.body.innerHTML = '<p>'; }),
                       /TrustedHTML/, 'no script can make markup of a text');
  await sell(4601);
});

test('a fault switched on reaches the till, by keyboard too, and ends by itself or by hand',
     async () => {
  await page.getByRole('radio', {name: 'always'}).check();
  await faultSwitch('503').focus();
  await page.keyboard.press('Space');
  await isOn('503', true);
  till.type('card 79160000002');
  await till.says(/Ошибка связи|connection|no answer/i);
  await showsText('#exchanges summary', 'busy');
  await faultSwitch('503').click();
  await isOn('503', false);
  await page.getByRole('radio', {name: 'once'}).check();
  await page.getByRole('combobox').selectOption({label: 'CreateAuthorizedOrder'});
  await faultSwitch('Drop').click();
  await isOn('Drop', true);
  await sell(4602);
  await isOn('Drop', false);
  // The order was executed but its answer lost, so the till sends it again.
  await showsText('#orders li', '1 × repeated');
});

test('a refusal is red, and a click follows one sale', async () => {
  await page.getByRole('radio', {name: 'once'}).check();
  await page.getByRole('combobox').selectOption({label: 'CreateAuthorizedOrder'});
  await faultSwitch(/^Answer/).click();
  await isOn('Answer', true);
  await sell(4610);
  const refused = page.locator('#exchanges li', {hasText: 'answer'}).first();
  await refused.locator('.badge.bad', {hasText: '200 Error'}).waitFor();
  till.type('card 79160000009');
  await till.says(/Card \d/);
  await sell(4611);
  const unprocessed = page.locator('#exchanges li', {hasText: 'NotProcessed'}).first();
  await unprocessed.locator('.badge.bad').waitFor();
  await unprocessed.getByRole('button', {name: /^\d/}).click();
  const rows = await page.locator('#exchanges li:visible').allInnerTexts();
  assert.ok(rows.length >= 2 && rows.every(row => row.includes('+79160000009')), rows.join('\n'));
  await page.getByRole('button', {name: /^Only/}).click();
});

test('a paused list holds still, and an opened exchange stays and can be copied', async () => {
  await page.getByRole('button', {name: 'Pause'}).click();
  const first = page.locator('#exchanges li').first();
  await first.locator('summary').click();
  const before = await first.innerText();
  await sell(4612);
  await page.getByRole('button', {name: /^Continue, [1-9]/}).waitFor();
  assert.equal(await first.innerText(), before);
  assert.match(before, /\n {2}"pointOfContact": "Offline"/);
  assert.ok(await page.evaluate(() => CSS.highlights.get('key').size > 0));
  await page.context().grantPermissions(['clipboard-read', 'clipboard-write']);
  await first.getByRole('button', {name: 'curl'}).click();
  const copied = await page.evaluate(() => navigator.clipboard.readText());
  assert.match(copied, /^curl \\\n {2}'http[^]*secretKey="KEY"[^]*--data-raw '\{/);
  assert.ok(!copied.includes('demo-secret'));
  await page.getByRole('button', {name: /^Continue/}).click();
  await shows(() => document.querySelectorAll('#exchanges li:first-child [open]').length === 0);
  assert.equal(await page.locator('#exchanges [open]').count(), 1);
  await page.locator('#exchanges [open] summary').click();
});

test('a hidden page frees its connection, and a switch that waits for one says so', async () => {
  const others = [];
  for (let i = 0; i < 5; ++i) {
    others.push(await page.context().newPage());
    await others[i].goto(address('/'));
    await others[i].locator('#connection.live').waitFor();
  }
  await faultSwitch('Cut').click();
  await page.getByRole('alert').getByText('has not answered for a second').waitFor();
  for (const other of others)
    await other.evaluate(() => {
      Object.defineProperty(document, 'hidden', {value: true});
      document.dispatchEvent(new Event('visibilitychange'));
    });
  await isOn('Cut', true);
  await page.getByRole('alert').waitFor({state: 'hidden'});
  await Promise.all(others.map(other => other.close()));
  await faultSwitch('Cut').click();
  await isOn('Cut', false);
});

test('axe finds nothing, and nothing that the page asks for is missing', async () => {
  const context = await browser.newContext({bypassCSP: true});
  const other = await context.newPage();
  const missing = [];
  other.on('response', answer => { if (!answer.ok()) missing.push(answer.url()); });
  await other.goto(address('/'));
  await other.locator('#exchanges summary').first().click();
  await other.evaluate(await readFile('node_modules/axe-core/axe.min.js', 'utf8'));
  for (const colorScheme of ['light', 'dark']) {
    await other.emulateMedia({colorScheme});
    const {violations} = await other.evaluate(() => window.axe.run());
    assert.deepEqual(violations.map(({id, nodes}) => [id, nodes[0].html]), []);
  }
  assert.deepEqual(missing, []);
  await context.close();
});

test('no other page changes anything, and a program without a page may', async () => {
  const before = (await orders()).length;
  assert.ok(before > 0);
  const attack = `<form method="post" action="${address('/simulator/reset')}"
      enctype="text/plain"><input name="a" value="b"></form><script>
      fetch('${address('/simulator/reset')}', {method: 'POST', mode: 'no-cors', body: 'x'})
          .catch(() => {}).then(() => document.forms[0].submit());</script>`;
  const foreign = createServer((_, answer) => {
    answer.setHeader('Content-Type', 'text/html');
    answer.end(attack);
  }).listen(0, '127.0.0.1');
  await once(foreign, 'listening');
  const other = await browser.newPage();
  await other.goto(`http://localhost:${foreign.address().port}/`);
  await other.getByText('Only the service').waitFor();
  await other.close();
  foreign.close();
  assert.equal((await orders()).length, before);
  const answer = await fetch(address('/simulator/faults'), {method: 'DELETE'});
  assert.equal(answer.status, 200);
});

test('a lost connection is marked, and what is shown is right again afterwards', async () => {
  const shown = await page.locator('#orders li').count();
  await simulator.end('SIGKILL');
  await showsText('#connection', 'connection lost');
  assert.ok(await faultSwitch('Drop').isDisabled());
  await startSimulator();
  await shows(() => document.getElementById('connection').textContent === 'live');
  await shows(count => document.querySelectorAll('#orders li').length === count, shown);
  await sell(4603);
  await shows(count => document.querySelectorAll('#orders li').length === count, shown + 1);
});

test('the page fits from a phone to a wide screen', async () => {
  for (const colorScheme of ['light', 'dark']) {
    await page.emulateMedia({colorScheme});
    for (const width of [360, 768, 1280, 1600]) {
      await page.setViewportSize({width, height: 900});
      const wide = await page.evaluate(() => document.documentElement.scrollWidth);
      assert.ok(wide <= width, `${wide} pixels on a screen of ${width}`);
      if (process.env.PICTURES)
        await page.screenshot({path: join(process.env.PICTURES, `${width}-${colorScheme}.png`),
                               fullPage: true});
    }
  }
});

test('reset asks, then forgets everything', async () => {
  page.once('dialog', dialog => dialog.dismiss());
  await page.getByRole('button', {name: 'Reset'}).click();
  assert.ok((await orders()).length > 0);
  page.once('dialog', dialog => dialog.accept());
  await page.getByRole('button', {name: 'Reset'}).click();
  await showsText('#orders + .empty', 'No order');
  await shows(() => document.querySelectorAll('#orders li').length === 0);
  assert.deepEqual(await orders(), []);
  assert.ok(await page.evaluate(() => window.isFirst));
});
