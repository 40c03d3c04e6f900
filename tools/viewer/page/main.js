// Keeps the page in step with the viewer program, or with a message that somebody stepped back to.

import {isolated} from './dom.js';
import {Notice, ask, listen} from './link.js';
import {LogPanel} from './log.js';
import {TokenPanel, VariablesPanel} from './panels.js';
import {TierView} from './tiers.js';

const $ = (id) => document.getElementById(id);

let status = {run: 0, version: 0, connected: false, takesRequests: false, engine: '', first: 0, last: 0, shown: 0};
let reachable = false;     // the viewer program
let past = 0;              // the message that was stepped back to; 0 while live
let shown = 0;             // the message behind which the structure on the page was so
let words = '';            // that message
let selected = 0;
let changed = new Set();   // what changed last

const tiers = new TierView($('tiers'), select);
const token = new TokenPanel($('token'));
const variables = new VariablesPanel($('variables'), select);
const log = new LogPanel($('log'), stepTo, refresh);
const notice = new Notice($('notice'));

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
  showSteps();
}

function showSteps() {
  $('tiers').classList.toggle('past', past > 0);
  $('step-live').setAttribute('aria-pressed', String(!past));
  const step = $('step');
  step.min = status.first;
  step.max = status.last;
  step.value = past || status.last;
  step.disabled = status.last === 0;
  $('step-text').textContent = past
    ? `after message ${past} of ${status.last}: ${past === shown ? words : ''}`
    : `${status.last} messages`;
}

// One question at a time: while the answer is on its way, further changes only say that there is to
// be another.
const retryTime = 3000;
let asking = false;
let again = false;
let retry;

async function refresh() {
  if (asking) {
    again = true;
    return;
  }
  asking = true;
  clearTimeout(retry);
  try {
    do {
      again = false;
      await showStructure();
    } while (again);
  } catch {
    retry = setTimeout(refresh, retryTime);
  } finally {
    asking = false;
  }
}

async function showStructure() {
  const at = past;
  const question = at ? `at=${at}&since=${at - 1}` : shown && shown <= status.shown ? `since=${shown}` : '';
  const run = status.run;
  const structure = await ask(`/structure?${question}`);
  if (at !== past || run !== status.run) {
    again = true;
    return;
  }
  changed = new Set(structure.changed);
  shown = structure.number;
  tiers.show(structure, {follow: $('follow').checked, live: !at});
  variables.show(structure.lists);
  $('language').replaceChildren(...structure.language ? ['language ', isolated(structure.language)] : []);
  showToken();
  const entry = await log.show(status, at || status.last, !at);
  words = entry?.words ?? '';
  showSteps();
}

// What changed before the step is not new any more.
function step(number) {
  past = number;
  words = '';
  tiers.forgetChanges();
  showStatus();
  // At once: what is shown until the answer comes cannot be edited either.
  showToken();
  refresh();
}

function stepTo(number) {
  step(Math.min(Math.max(number, status.first), status.last));
}

function goLive() {
  log.follow();
  step(0);
}

function stepOn() {
  if (past && past < status.last) stepTo(past + 1);
  else if (past) goLive();
}

function stepBack() {
  stepTo((past || status.last) - 1);
}

$('step').addEventListener('input', () => stepTo(Number($('step').value)));
$('step-first').addEventListener('click', () => stepTo(status.first));
$('step-back').addEventListener('click', stepBack);
$('step-on').addEventListener('click', stepOn);
$('step-live').addEventListener('click', goLive);
$('zoom').addEventListener('input', () => tiers.setZoom(Number($('zoom').value)));
$('disconnect').addEventListener('click', () => notice.wish('/disconnect', {}));
document.addEventListener('keydown', (event) => {
  if (event.target.closest('input, select') || event.ctrlKey || event.altKey || event.metaKey) return;
  const move = {ArrowLeft: stepBack, ArrowRight: stepOn}[event.key];
  if (!move) return;
  event.preventDefault();
  move();
});

function forgetEngine() {  // the objects of another one have numbers of their own
  selected = 0;
  tiers.forgetObjects();
}

function hear(told) {
  if (told.run === status.run && told.version < status.version && reachable) return;  // overtaken
  if (told.run !== status.run) {  // another viewer program: its messages begin anew
    past = 0;
    shown = 0;
    log.follow();
  }
  if (told.run !== status.run || told.engine !== status.engine) forgetEngine();
  if (told.engine !== status.engine || told.connected !== status.connected) notice.say('');
  status = told;
  reachable = true;
  const gone = past && past < status.first;
  if (gone) past = status.first;
  showStatus();
  if (!past || gone) refresh();
  else showToken();
}

function lose() {
  reachable = false;
  showStatus();
  showToken();
}

listen(hear, lose);
showStatus();
