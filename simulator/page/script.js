'use strict';

// Any shown value may come from a till, so it becomes text, never markup.

const mostShown = 200; // of a list; the service sends no more
const mostLines = 50;  // of an order
const operations = ['GetCustomer', 'RegisterCustomer', 'EditCustomer', 'ConfirmMobilePhone',
                    'ResendMobilePhoneConfirmationCode', 'CheckMobilePhoneAuthorizationCode',
                    'EmailConfirmationLetter', 'CreateAuthorizedOrder', 'ChangeStatus'];
// kind, name, meaning, members from the form
const faults = [
  ['delay', 'Delay', 'the answer comes late', 'executed', 'milliseconds'],
  ['drop', 'Drop', 'closes without a byte', 'executed'],
  ['cut', 'Cut', 'closes within the answer', 'executed'],
  ['emptyBody', 'Empty', 'HTTP 200 without a body', 'executed'],
  ['http500', '500', 'HTTP 500 without a body', 'executed'],
  ['busy', '503', 'busy, with Retry-After', 'executed'],
  ['html', 'Page', 'a web page instead of JSON', 'executed'],
  ['slowDrip', 'Drip', 'the answer comes byte by byte', 'milliseconds'],
  ['answer', 'Answer', 'the code and body above', 'executed', 'httpCode', 'body'],
];
const moods = {Success: 'good', Found: 'good', Created: 'good', Changed: 'good', Processed: 'good',
               Calculated: 'good', MobilePhoneConfirmed: 'good', AlreadyConfirmed: 'good',
               NotFound: 'warn'};

const byId = id => document.getElementById(id);

/// An element with a class and children, which are elements or texts.
function make(tag, className, ...children) {
  const element = document.createElement(tag);
  element.className = className;
  element.append(...children.filter(child => child !== '').map(
      child => child instanceof Node ? child : String(child)));
  return element;
}

function makeButton(className, click, ...children) {
  const button = make('button', className, ...children);
  button.type = 'button';
  button.addEventListener('click', click);
  return button;
}

const badge = (text, mood = '') => make('span', `badge ${mood}`, text);
const time = milliseconds => new Date(milliseconds).toLocaleTimeString();
const money = amount => Number(amount).toFixed(2);
const only = object => Object.entries(object ?? {})[0] ?? ['', ''];
const short = operation => operation.replace(/^Offline\./, '');

const bubble = (who, sentAt, ...what) => make('li', '', make('span', 'who', who),
    make('span', '', ...what), make('time', 'quiet', time(sentAt)));

function customerItem({mobilePhone, firstName, lastName, email, ...customer}) {
  const confirmed = (is, what) => badge(`${what} ${is ? '✓ confirmed' : 'not confirmed'}`,
                                        is ? 'good' : 'warn');
  const joined = (parts, between) => parts.filter(part => part).join(between);
  return make('li', '', make('div', 'top', make('strong', '', `+${mobilePhone}`),
                             make('span', '', joined([firstName, lastName], ' '))),
              make('div', 'quiet', joined([customer.sex, customer.birthDate, email], ' · ')),
              make('div', '', confirmed(customer.isMobilePhoneConfirmed, 'phone'), ' ',
                   email ? confirmed(customer.isEmailConfirmed, 'e-mail') : ''));
}

function lineRow(line) {
  const promotions = (line.requestedPromotions ?? []).map(({type, amount, promotion}) =>
      `${type} ${money(amount)} · promotion ${promotion.ids.externalId}`);
  const sum = line.discountedPricePerLine ?? line.discountedPriceOfLine;
  return make('tr', '', make('td', 'quiet', line.lineNumber),
              make('td', '', only(line.product?.ids)[1],
                   make('div', 'quiet', promotions.join(', '))),
              make('td', 'number', `${line.quantity} × ${money(line.basePricePerItem)}`),
              make('td', 'number', money(sum)),
              make('td', '', line.status ? badge(line.status, 'good') : badge('no status')));
}

function orderItem({mobilePhone, executionDateTimeUtc, ...order}) {
  const [name, id] = only(order.ids);
  const head = ['no.', 'product', 'price', 'sum', 'status'].map(text => make('th', '', text));
  const more = order.lines.length - mostLines;
  const counts = [['repeated', order.repetitions], ['differed', order.conflicts, 'bad'],
                  ['status repeated', order.statusRepetitions]]
      .filter(([, count]) => count > 0)
      .map(([what, count, mood]) => badge(`${count} × ${what}`, mood));
  return make('li', '', make('div', 'top', make('strong', 'id', id),
                             make('strong', 'number', money(order.totalPrice))),
              make('div', 'quiet', `${name} · `,
                   mobilePhone ? `customer +${mobilePhone}` : 'no customer',
                   executionDateTimeUtc ? ` · of ${executionDateTimeUtc} UTC` : ''),
              make('div', '', badge(order.processingStatus, 'good'), ' ', ...counts),
              make('table', '', make('thead', '', make('tr', '', ...head)),
                   make('tbody', '', ...order.lines.slice(0, mostLines).map(lineRow))),
              make('div', 'quiet', more > 0 ? `… and ${more} more` : ''));
}

function parsed(text) {
  try {
    return JSON.parse(text);
  } catch {
    return text;
  }
}

function indented(text) {
  const value = parsed(text);
  return (value === text ? text : JSON.stringify(value, null, 2)) || '(empty)';
}

/// Colours the opened JSON with the browser's highlights, which need no markup.
function colour() {
  const ranges = {key: [], text: [], value: []};
  const token = /("(?:[^"\\]|\\.)*")(:?)|\b(?:true|false|null|-?\d[\d.eE+-]*)/g;
  for (const {textContent, firstChild} of document.querySelectorAll('[open] pre.json')) {
    for (const {0: found, 1: text, 2: colon, index} of textContent.matchAll(token)) {
      const range = new Range();
      range.setStart(firstChild, index);
      range.setEnd(firstChild, index + found.length);
      ranges[colon ? 'key' : text ? 'text' : 'value'].push(range);
    }
  }
  for (const name in ranges) CSS.highlights?.set(name, new Highlight(...ranges[name]));
}

function curl({request}) {
  const quoted = text => `'${text.replaceAll("'", "'\\''")}'`;
  const [line, ...headers] = request.head.trim().split('\r\n');
  const kept = headers.filter(header => /^(accept|content-type):/i.test(header));
  return ['curl', quoted(location.origin + line.split(' ')[1]),
          ...[...kept, 'Authorization: Mindbox secretKey="KEY"'].map(field => `-H ${quoted(field)}`),
          `--data-raw ${quoted(request.body)}`].join(' \\\n  ');
}

function exchangeItem(exchange) {
  const {operation, httpCode, outcome, fault, request, answer, order, phone} = exchange;
  const result = httpCode ? `${httpCode} ${outcome || 'no status'}` : 'no answer';
  const mood = httpCode === 200 && moods[outcome] || 'bad';
  const summary = make('summary', '', make('strong', '', short(operation) || 'no operation'), ' ',
                       badge(result, mood), ' ', fault ? badge(fault, 'warn') : '', ' ',
                       exchange.isDone ? '' : badge('not done', 'bad'));
  const part = (title, {head, body}) => [make('h3', 'quiet', title), make('pre', '', head || '(nothing)'),
                                         make('pre', 'json', indented(body))];
  const copy = makeButton('', () => navigator.clipboard.writeText(curl(exchange)), 'Copy as curl');
  const details = make('details', '', summary, ...part('Request', request),
                       ...part('Answer', answer), copy);
  details.addEventListener('toggle', colour);
  const follow = text => makeButton('link', () => filter(exchange), text);
  const who = [phone ? follow(`+${phone}`) : '', ' ', order ? follow(order) : ''];
  const when = [time(exchange.at), `${exchange.milliseconds} ms`, `connection ${exchange.connection}`];
  const item = make('li', '', make('div', 'top', make('span', '', ...who),
                                   make('span', 'quiet', when.join(' · '))), details);
  return Object.assign(item, {exchange, hidden: !isInSale(exchange)});
}

let sale = null; // the exchange whose sale is shown, or null for all

/// A sale is an order and the look-ups of its customer.
function isInSale({order, phone}) {
  if (!sale) return true;
  return sale.order && order ? order === sale.order : phone !== '' && phone === sale.phone;
}

function filter(exchange) {
  sale = exchange;
  byId('filter').hidden = !sale;
  byId('filter').textContent = sale ? `Only ${sale.order || `+${sale.phone}`} ✕` : '';
  for (const item of byId('exchanges').children) item.hidden = !isInSale(item.exchange);
}

/// The lists by the ids of their elements, with the item of an object.
const lists = {
  codes: ({mobilePhone, sentAt, code}) =>
      bubble(`+${mobilePhone}`, sentAt, 'code ', make('b', 'code', code)),
  letters: ({email, sentAt}) => bubble(email, sentAt, 'please confirm your e-mail'),
  customers: customerItem,
  orders: orderItem,
  exchanges: exchangeItem,
};
let held = null; // exchanges that arrived during a pause

/// Puts the objects on top of their list, the latest first.
function show(name, objects = []) {
  const list = byId(name);
  for (const object of objects) {
    [...list.children].find(item => item.key === object.key)?.remove();
    list.prepend(Object.assign(lists[name](object), {key: object.key}));
  }
  for (const item of [...list.children].slice(mostShown))
    if (!item.querySelector('[open]')) item.remove();
}

function take(news) {
  if (news.reset) {
    for (const name in lists) byId(name).replaceChildren();
    held &&= [];
  }
  held?.push(...news.exchanges?.splice(0) ?? []);
  if (held?.length) byId('pause').textContent = `Continue, ${held.length} more`;
  for (const name in lists) {
    show(name, news[name]);
    const total = news.totals?.[name] ?? 0;
    const shown = byId(name).childElementCount;
    if (news.totals && byId(`${name}-total`))
      byId(`${name}-total`).textContent = total > shown ? `${total}, the latest ${shown}` : total;
  }
  if (news.faults) showFaults(news.faults);
}

function togglePause() {
  if (held) show('exchanges', held);
  held = held ? null : [];
  byId('pause').textContent = held ? 'Continue' : 'Pause';
  byId('pause').setAttribute('aria-pressed', String(held !== null));
}

function say(trouble = '') {
  byId('trouble').textContent = trouble;
  byId('trouble').hidden = !trouble;
}

async function ask(method, path, body) {
  const late = setTimeout(say, 1000, 'The simulator has not answered for a second. Six pages open ' +
      'side by side use up the browser’s connections to it: close some.');
  try {
    const answer = await fetch(path, {method, body: body && JSON.stringify(body)});
    say(answer.ok ? '' : (await answer.json()).errorMessage);
  } catch {
    say('The simulator cannot be reached.');
  }
  clearTimeout(late);
}

const chosen = name => document.querySelector(`input[name=${name}]:checked`).value;

function orderFault(kind, ...takes) {
  if (!byId('settings').reportValidity()) return;
  const often = chosen('often');
  const given = {executed: chosen('executed') === 'after', body: parsed(byId('body').value)};
  const order = {kind, count: often === 'once' ? 1 : 0};
  if (often === 'random') order.probability = byId('percent').valueAsNumber / 100;
  if (byId('operation').value) order.operation = byId('operation').value;
  for (const name of takes) order[name] = given[name] ?? byId(name).valueAsNumber;
  ask('POST', '/simulator/faults', order);
}

function describe({probability = 1, count = 1, operation = ''}) {
  const often = probability < 1 ? `${Math.round(probability * 100)} %`
      : count ? `${count} ×` : 'always';
  return operation ? `${often}, ${short(operation)}` : often;
}

function showFaults(plan) {
  for (const button of document.querySelectorAll('#faults button')) {
    const waiting = plan.waiting.filter(fault => fault.kind === button.dataset.kind);
    button.setAttribute('aria-checked', String(waiting.length > 0));
    button.querySelector('.state').textContent = waiting.map(describe).join('; ') || 'off';
  }
}

function build() {
  byId('operation').append(new Option('every operation', ''), ...operations.map(
      name => new Option(name, `Offline.${name}`)));
  for (const [kind, name, means, ...takes] of faults) {
    const button = makeButton('', () => {
      const isOn = button.getAttribute('aria-checked') === 'true';
      if (isOn) ask('DELETE', `/simulator/faults?kind=${kind}`);
      else orderFault(kind, ...takes);
    }, make('span', 'name', name), make('span', 'state', 'off'), make('span', 'quiet', means));
    button.disabled = true;
    button.dataset.kind = kind;
    button.setAttribute('role', 'switch');
    button.setAttribute('aria-checked', 'false');
    byId('faults').append(make('li', '', button));
  }
  byId('settings').addEventListener('submit', event => event.preventDefault());
  byId('filter').addEventListener('click', () => filter(null));
  byId('pause').addEventListener('click', togglePause);
  byId('reset').addEventListener('click', () => {
    if (confirm('Forget all orders, customers and faults?')) ask('POST', '/simulator/reset');
  });
  // A browser has few connections for all of its pages, and each stream takes one.
  document.addEventListener('visibilitychange', connect);
}

let source;

function mark(isLive) {
  const connection = byId('connection');
  if (connection.className === (isLive ? 'live' : 'lost')) return;
  connection.className = isLive ? 'live' : 'lost';
  connection.textContent = isLive ? 'live'
      : `connection lost at ${time(Date.now())}; what is shown may be old`;
  for (const button of document.querySelectorAll('#faults button, #reset')) button.disabled = !isLive;
}

/// The browser connects again by itself.
function connect() {
  source?.close();
  if (document.hidden) return;
  source = new EventSource('/simulator/events');
  source.onmessage = event => {
    mark(true);
    take(JSON.parse(event.data));
  };
  source.onerror = () => mark(false);
}

build();
connect();
