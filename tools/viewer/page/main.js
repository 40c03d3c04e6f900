// Keeps the page in step with the viewer program, or with a message that somebody stepped back to.

import {LogPanel, TokenPanel, VariablesPanel, askToDisconnect} from './panels.js';
import {TierView} from './tiers.js';

const $ = (id) => document.getElementById(id);

let status = {connected: false, takesRequests: false, engine: '', first: 0, last: 0, shown: 0};
let reachable = false;     // the viewer program
let past = 0;              // the message that was stepped back to; 0 while live
let shown = 0;             // the message behind which the structure on the page was so
let selected = 0;
let changed = new Set();   // what changed last

const tiers = new TierView($('tiers'), select);
const token = new TokenPanel($('token'));
const variables = new VariablesPanel($('variables'), select);
const log = new LogPanel($('log'), stepTo);

function select(id) {
  selected = id;
  tiers.select(id);
  showToken();
}

function whyNoEdit() {
  if (past) return 'Go back to “Live” to set fields.';
  if (!reachable || !status.connected) return 'No engine is connected.';
  return status.takesRequests ? undefined : 'The engine takes no requests.';
}

function showToken() {
  token.show(tiers.find(selected), whyNoEdit(), changed.has(selected));
}

function showStatus() {
  const state = !reachable ? 'lost' : status.connected ? 'connected' : 'waiting';
  $('status').className = state;
  $('status-text').textContent = {
    lost: 'the viewer program does not answer',
    connected: `engine ${status.engine}`,
    waiting: 'no engine',
  }[state];
  $('banner').textContent = {
    lost: 'The viewer program does not answer. The page goes on by itself when it is back.',
    connected: '',
    waiting: 'No engine is connected. ' + (status.last > 0
      ? 'What is shown is what the last one left.'
      : 'Start one that calls StartMessageEngine().'),
  }[state];
  $('disconnect').disabled = state !== 'connected' || !status.takesRequests;
  $('tiers').classList.toggle('stale', state !== 'connected' && !past);
  $('tiers').classList.toggle('past', past > 0);
  $('step-live').setAttribute('aria-pressed', String(!past));
  const step = $('step');
  step.min = status.first;
  step.max = status.last;
  step.value = past || status.last;
  step.disabled = status.last === 0;
}

// One question at a time: while the answer is on its way, further changes only say that there is to
// be another.
let asking = false;
let again = false;

async function refresh() {
  if (asking) {
    again = true;
    return;
  }
  asking = true;
  try {
    do {
      again = false;
      await showStructure();
    } while (again);
  } catch {
    // The next event brings another try.
  } finally {
    asking = false;
  }
}

async function showStructure() {
  const at = past;
  const question = at ? `at=${at}&since=${at - 1}` : shown && shown <= status.shown ? `since=${shown}` : '';
  const answer = await fetch(`/structure?${question}`);
  const structure = await answer.json();
  if (at !== past) {
    again = true;
    return;
  }
  changed = new Set(structure.changed);
  // What changed goes on to be seen as long as nothing else does.
  if (!at && changed.size === 0) structure.changed = [...tiers.changed];
  shown = structure.number;
  tiers.show(structure, $('follow').checked);
  variables.show(structure.lists);
  $('language').textContent = structure.language ? `language ${structure.language}` : '';
  showToken();
  const entry = await log.show(status, at || status.last, !at);
  $('step-text').textContent = at
    ? `after message ${at} of ${status.last}: ${entry?.words ?? ''}`
    : `${status.last} messages`;
}

function stepTo(number) {
  past = Math.min(Math.max(number, status.first), status.last);
  tiers.forgetChanges();
  showStatus();
  refresh();
}

// What has changed since the message that was looked at is new.
function goLive() {
  past = 0;
  tiers.forgetChanges();
  showStatus();
  refresh();
}

$('step').addEventListener('input', () => stepTo(Number($('step').value)));
$('step-first').addEventListener('click', () => stepTo(status.first));
$('step-back').addEventListener('click', () => stepTo((past || status.last) - 1));
$('step-on').addEventListener('click', () => stepTo((past || status.last) + 1));
$('step-live').addEventListener('click', goLive);
$('zoom').addEventListener('input', () => tiers.setZoom(Number($('zoom').value)));
$('disconnect').addEventListener('click', askToDisconnect);
document.addEventListener('keydown', (event) => {
  if (event.target.closest('input, select') || event.ctrlKey || event.altKey || event.metaKey) return;
  const step = {ArrowLeft: -1, ArrowRight: 1}[event.key];
  if (!step) return;
  event.preventDefault();
  stepTo((past || status.last) + step);
});

function hear(told) {
  if (told.last < status.last) {  // another viewer program: its messages begin anew
    past = 0;
    shown = 0;
  }
  if (told.engine !== status.engine) {  // its objects have numbers of their own
    selected = tiers.selected = 0;
    tiers.forgetChanges();
  }
  status = told;
  reachable = true;
  const gone = past && past < status.first;
  if (gone) past = status.first;
  showStatus();
  if (!past || gone) refresh();
  else showToken();
}

// A browser has few connections for one server: a page that nobody sees gives its own back.
const retry = 3000;
let events;

function listen() {
  events?.close();
  events = undefined;
  if (document.hidden) return;
  events = new EventSource('/events');
  events.addEventListener('message', (event) => hear(JSON.parse(event.data)));
  events.addEventListener('error', () => {
    reachable = false;
    showStatus();
    showToken();
    // It tries again by itself, unless it was refused.
    if (events?.readyState === EventSource.CLOSED) setTimeout(listen, retry);
  });
}

document.addEventListener('visibilitychange', listen);
listen();
showStatus();
