'use strict';

// Whatever is shown here may come from a till: it becomes text, never markup.

const mostShown = 200; // as many as the service tells
const silence = 6000;  // milliseconds; the service gives a sign every two seconds
const operations = ['GetCustomer', 'RegisterCustomer', 'EditCustomer', 'ConfirmMobilePhone',
                    'ResendMobilePhoneConfirmationCode', 'CheckMobilePhoneAuthorizationCode',
                    'EmailConfirmationLetter', 'CreateAuthorizedOrder', 'ChangeStatus'];
const faults = [
  {kind: 'delay', name: 'Delay', means: 'the answer comes late'},
  {kind: 'drop', name: 'Drop', means: 'closes without a byte'},
  {kind: 'cut', name: 'Cut', means: 'closes within the answer'},
  {kind: 'emptyBody', name: 'Empty', means: '200 and no body'},
  {kind: 'http500', name: '500', means: 'the error and no body'},
  {kind: 'busy', name: '503', means: 'busy, with Retry-After'},
  {kind: 'html', name: 'Page', means: 'a web page instead of JSON'},
  {kind: 'slowDrip', name: 'Drip', means: 'the answer comes byte by byte'},
  {kind: 'wrongCodeAsValidationError', name: 'Wrong code', means: 'told as a validation error'},
];

const byId = id => document.getElementById(id);

/// An element of a class with children, which are elements or texts.
function make(tag, className, ...children) {
  const element = document.createElement(tag);
  element.className = className;
  element.append(...children.filter(child => child !== null).map(
      child => child instanceof Node ? child : String(child)));
  return element;
}

const badge = (text, mood = '') => make('span', `badge ${mood}`, text);
const time = milliseconds => new Date(milliseconds).toLocaleTimeString();
const money = amount => Number(amount).toFixed(2);
const plural = (count, one, many) => `${count} ${count === 1 ? one : many}`;
const only = object => Object.entries(object ?? {})[0] ?? ['', ''];

function smsItem(sms) {
  return make('li', '', make('span', 'who', `+${sms.mobilePhone}`),
              make('span', 'what', 'code ', make('b', 'code', sms.code)),
              make('time', 'quiet', time(sms.sentAt)));
}

function letterItem(letter) {
  return make('li', '', make('span', 'who', letter.email),
              make('span', 'what', 'please confirm your e-mail'),
              make('time', 'quiet', time(letter.sentAt)));
}

function customerItem(customer) {
  const confirmed = (is, what) => badge(`${what} ${is ? '✓ confirmed' : 'not confirmed'}`,
                                        is ? 'good' : 'warn');
  const name = [customer.firstName, customer.lastName].filter(part => part).join(' ');
  const details = [customer.sex, customer.birthDate, customer.email].filter(part => part);
  return make('li', '', make('div', 'top', make('strong', '', `+${customer.mobilePhone}`),
                             make('span', '', name)),
              make('div', 'quiet', details.join(' · ')),
              make('div', '', confirmed(customer.isMobilePhoneConfirmed, 'phone'), ' ',
                   customer.email ? confirmed(customer.isEmailConfirmed, 'e-mail') : ''));
}

function lineRows(line) {
  const [, product] = only(line.product?.ids);
  const promotions = (line.requestedPromotions ?? []).map(
      ({type, amount, promotion}) => `${type} ${money(amount)} · promotion ${promotion.ids.externalId}`);
  const status = line.status ? badge(line.status, 'good') : badge('no status');
  return make('tr', '', make('td', 'quiet', line.lineNumber),
              make('td', '', product, make('div', 'quiet', promotions.join(', '))),
              make('td', 'number', `${line.quantity} × ${money(line.basePricePerItem)}`),
              make('td', 'number', money(line.discountedPricePerLine)), make('td', '', status));
}

function orderItem(order) {
  const [name, id] = only(order.ids);
  const head = ['', 'product', 'price', 'sum', 'status'].map(
      text => make('th', '', text));
  head.forEach(cell => { cell.scope = 'col'; });
  const more = order.lineCount - order.lines.length;
  const counts = [[order.repetitions, 'repetition', 'repetitions', ''],
                  [order.conflicts, 'repetition differed', 'repetitions differed', 'bad'],
                  [order.statusRepetitions, 'status repeated', 'statuses repeated', '']]
      .filter(([count]) => count > 0)
      .map(([count, one, many, mood]) => badge(plural(count, one, many), mood));
  return make('li', '', make('div', 'top', make('strong', 'id', id),
                             make('strong', 'number', money(order.totalPrice))),
              make('div', 'quiet', `${name} · `,
                   order.mobilePhone ? `customer +${order.mobilePhone}` : 'no customer',
                   order.executionDateTimeUtc ? ` · of ${order.executionDateTimeUtc} UTC` : ''),
              make('div', '', badge(order.processingStatus, 'good'), ' ', ...counts),
              make('table', '', make('thead', '', make('tr', '', ...head)),
                   make('tbody', '', ...order.lines.map(lineRows))),
              make('div', 'quiet', more > 0 ? `… and ${plural(more, 'line', 'lines')} more` : ''));
}

function outcome(exchange) {
  if (!exchange.httpCode) return badge('no answer', 'bad');
  let text = '';
  try {
    const answer = JSON.parse(exchange.answer);
    const part = answer.order ?? answer.smsConfirmation ?? answer.customer;
    text = exchange.isDone ? part?.processingStatus ?? answer.status ?? '' : '';
  } catch { /* cut short, or none */ }
  const isGood = exchange.httpCode === 200 && !exchange.fault;
  return badge(`${exchange.httpCode} ${text}`.trim(), isGood ? 'good' : 'bad');
}

function exchangeItem(exchange) {
  const name = exchange.operation.replace(/^Offline\./, '') || 'no operation';
  const body = text => make('pre', '', text || '(empty)');
  const summary = make('summary', '', make('span', 'top', make('strong', '', name),
                                           make('time', 'quiet', time(exchange.at))),
                       make('span', 'top', make('span', '', outcome(exchange), ' ',
                                                exchange.fault ? badge(exchange.fault, 'warn') : ''),
                            make('span', 'quiet', `${exchange.milliseconds} ms · connection ` +
                                 exchange.connection)));
  return make('li', '', make('details', '', summary, make('h3', '', 'Request'),
                             body(exchange.sent), make('h3', '', 'Answer of the operation'),
                             exchange.isDone ? body(exchange.answer)
                                             : make('p', 'quiet', 'It was not carried out.')));
}

/// A list on the page, the latest on top.
class Feed {
  constructor(id, item, most = mostShown) {
    Object.assign(this, {list: byId(id), total: byId(`${id}-total`), item, most});
    this.clear();
  }

  clear() {
    this.items = new Map(); // by number
    this.list.replaceChildren();
  }

  take(objects) {
    for (const object of objects) {
      const item = this.item(object);
      const known = this.items.get(object.number);
      if (known) known.replaceWith(item);
      else this.list.prepend(item);
      this.items.set(object.number, item);
    }
    for (const [number, item] of this.items) {
      if (this.items.size <= this.most) break;
      item.remove();
      this.items.delete(number);
    }
  }

  count(total = 0) {
    const hidden = total - this.items.size;
    this.total.textContent = hidden > 0 ? `${total}, the latest ${this.items.size}` : total;
  }
}

const feeds = {
  sms: new Feed('sms', smsItem, 20),
  letters: new Feed('letters', letterItem, 20),
  customers: new Feed('customers', customerItem),
  orders: new Feed('orders', orderItem),
  exchanges: new Feed('exchanges', exchangeItem, 100),
};

function take(news) {
  if (news.reset) Object.values(feeds).forEach(feed => feed.clear());
  for (const [name, feed] of Object.entries(feeds)) feed.take(news[name] ?? []);
  if (news.totals) {
    feeds.customers.count(news.totals.customers);
    feeds.orders.count(news.totals.orders);
  }
  if (news.faults) showFaults(news.faults);
}

async function ask(method, path, body) {
  const trouble = byId('trouble');
  try {
    const answer = await fetch(path, {method, body: body && JSON.stringify(body)});
    const told = answer.ok ? {} : await answer.json();
    trouble.textContent = told.errorMessage ?? '';
  } catch {
    trouble.textContent = 'The simulator cannot be reached.';
  }
  trouble.hidden = !trouble.textContent;
}

const chosen = name => document.querySelector(`input[name=${name}]:checked`).value;

function orderFault(kind) {
  if (!byId('settings').reportValidity()) return;
  const often = chosen('often');
  ask('POST', '/simulator/faults', {
    kind,
    operation: byId('operation').value,
    count: often === 'once' ? 1 : 0,
    probability: often === 'lot' ? byId('percent').valueAsNumber / 100 : 1,
    executed: chosen('executed') === 'after',
    milliseconds: byId('milliseconds').valueAsNumber,
    retryAfter: byId('retry-after').valueAsNumber,
  });
}

function toggle(event) {
  const button = event.currentTarget;
  const {kind} = button.dataset;
  if (button.getAttribute('aria-checked') === 'true')
    ask('DELETE', `/simulator/faults?kind=${encodeURIComponent(kind)}`);
  else orderFault(kind);
}

function describe(fault) {
  const often = fault.probability < 1 ? `${Math.round(fault.probability * 100)} %`
      : fault.count ? plural(fault.count, 'time', 'times') : 'always';
  const name = fault.operation.replace(/^Offline\./, '');
  return name ? `${often}, ${name}` : often;
}

function showFaults(plan) {
  for (const button of document.querySelectorAll('#faults button')) {
    const waiting = plan.waiting.filter(fault => fault.kind === button.dataset.kind);
    button.setAttribute('aria-checked', String(waiting.length > 0));
    button.querySelector('.state').textContent = waiting.map(describe).join('; ') || 'off';
  }
  const played = Object.entries(plan.played).map(([kind, count]) => `${kind} ${count}`);
  byId('played').textContent = played.length ? `Played: ${played.join(', ')}` : '';
}

function build() {
  byId('operation').append(new Option('every operation', ''), ...operations.map(
      name => new Option(name, `Offline.${name}`)));
  for (const {kind, name, means} of faults) {
    const button = make('button', '', make('span', 'name', name), make('span', 'state', 'off'),
                        make('span', 'quiet', means));
    button.type = 'button';
    button.disabled = true;
    button.dataset.kind = kind;
    button.setAttribute('role', 'switch');
    button.setAttribute('aria-checked', 'false');
    button.addEventListener('click', toggle);
    byId('faults').append(make('li', '', button));
  }
  byId('settings').addEventListener('submit', event => event.preventDefault());
  byId('percent').addEventListener('input', () => {
    document.querySelector('input[value=lot]').checked = true;
  });
  byId('reset').addEventListener('click', () => {
    if (confirm('Forget all orders, customers and faults?')) ask('POST', '/simulator/reset');
  });
}

let source;
let watch;

function mark(isLive) {
  const connection = byId('connection');
  if (connection.className === (isLive ? 'live' : 'lost')) return;
  connection.className = isLive ? 'live' : 'lost';
  connection.textContent = isLive ? 'live'
      : `connection lost at ${time(Date.now())}; what is shown may be old`;
  document.querySelectorAll('button').forEach(button => { button.disabled = !isLive; });
}

function connect() {
  source?.close();
  source = new EventSource('/simulator/events');
  source.onmessage = event => {
    mark(true);
    expect();
    take(JSON.parse(event.data));
  };
  source.onerror = () => mark(false);
  expect();
}

/// Begins anew when the service gives no sign, or the browser has given up.
function expect() {
  clearTimeout(watch);
  watch = setTimeout(() => {
    mark(false);
    connect();
  }, silence);
}

build();
connect();
