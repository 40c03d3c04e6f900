// The streams as lanes whose synchronous marks stand under each other. What is out of view is not
// in the document.

import {brief, element, isolatedText, onTap} from './dom.js';

const laneHeight = 34;
const tokenHeight = 26;
const tokenPadding = 12;
const gapWidth = 16;
const widestName = 260;  // pixels; of wider names the beginning is shown
const longestName = 60;  // characters; to measure more takes time
const longestHint = 200;
const hues = [215, 150, 35, 280, 345, 185, 95, 15];
const sweeps = 30;
const margin = 400;  // how far beyond the view things are drawn

const pen = document.createElement('canvas').getContext('2d');
pen.font = '14px "DejaVu Sans", system-ui, sans-serif';

const nameOf = (token) => brief(token.values[0] ?? '', longestName);

function cellWidth(cell) {
  return cell.reduce((sum, token) => sum + Math.min(pen.measureText(nameOf(token)).width, widestName) + tokenPadding, 0)
    || gapWidth;
}

// The smallest places of instants that leave room for every span; then room that is left over is
// shared out among neighbours. Instants are numbered so that spans lead to higher ones.
function findPlaces(instants, spans) {
  const ending = Array.from({length: instants}, () => []);
  const beginning = Array.from({length: instants}, () => []);
  for (const span of spans) {
    ending[span.to].push(span);
    beginning[span.from].push(span);
  }
  const places = new Array(instants).fill(0);
  const earliest = (instant) => ending[instant].reduce((at, {from, width}) => Math.max(at, places[from] + width), 0);
  const latest = (instant) => beginning[instant].reduce((at, {to, width}) => Math.min(at, places[to] - width), Infinity);
  for (let i = 0; i < instants; ++i) places[i] = earliest(i);
  for (let sweep = 0; sweep < sweeps; ++sweep) {
    for (let i = 0; i < instants; ++i) {
      if (ending[i].length && beginning[i].length) places[i] = (earliest(i) + latest(i)) / 2;
    }
  }
  return places;
}

export class TierView {
  constructor(root, onSelect) {
    this.names = element('div', {className: 'names'});
    this.canvas = element('div', {className: 'canvas'});
    this.scroller = element('div', {className: 'scroller'}, this.canvas);
    this.empty = element('div', {className: 'empty', textContent: 'No streams yet.'});
    this.root = root;
    this.structure = {lanes: [], instants: 0, changed: []};
    this.changed = new Set();
    this.members = [];  // of instants: lane and mark
    this.positions = new Map();  // of objects: where they begin, and in which lane
    this.zoom = 1;
    this.selected = 0;
    this.scroller.addEventListener('scroll', () => this.drawSoon());
    onTap(this.canvas, '.token', (token) => onSelect(Number(token.dataset.id)));
    new ResizeObserver(() => this.drawSoon()).observe(this.scroller);
    root.append(this.empty);
  }

  // The structure that is to be shown. What changed last in it is brought into view if wanted; else
  // what is in view stays there. While live, what changed last goes on to be seen until something else
  // changes.
  show(structure, {follow, live}) {
    const stay = this.findAnchor();
    this.structure = structure;
    if (!live || structure.changed.length) this.changed = new Set(structure.changed);
    this.place();
    const parts = structure.lanes.length ? [this.names, this.scroller] : [this.empty];
    // Who is taken out of the document forgets where it was scrolled to.
    if (this.root.firstChild !== parts[0]) this.root.replaceChildren(...parts);
    this.names.replaceChildren(...structure.lanes.map((lane) => {
      const name = element('div', {textContent: lane.name, title: lane.name});
      name.style.height = name.style.lineHeight = `${laneHeight}px`;
      return name;
    }));
    this.keepInPlace(stay);
    if (follow) this.reveal(structure.changed.findLast((id) => this.positions.has(id)));
    this.fresh = true;
    this.draw();
    this.fresh = false;
  }

  // The mark that stands first in view. Nothing where the lanes are at their beginning: there the
  // beginning stays in view.
  findAnchor() {
    const {scrollLeft} = this.scroller;
    let first;
    if (scrollLeft > 0) {
      for (const [id, {at}] of this.positions) {
        if (id && at >= scrollLeft && !(first?.at <= at)) first = {id, at};
      }
    }
    return first;
  }

  keepInPlace(anchor) {
    const position = anchor && this.positions.get(anchor.id);
    if (position) this.scroller.scrollLeft += position.at - anchor.at;
  }

  setZoom(zoom) {
    const middle = (this.scroller.scrollLeft + this.scroller.clientWidth / 2) / this.zoom;
    this.zoom = zoom;
    this.place();
    this.scroller.scrollLeft = middle * zoom - this.scroller.clientWidth / 2;
    this.draw();
  }

  // Nothing is new any more.
  forgetChanges() {
    this.changed.clear();
  }

  // What was shown says nothing of what will be.
  forgetObjects() {
    this.forgetChanges();
    this.selected = 0;
    this.positions.clear();
    this.scroller.scrollLeft = 0;
  }

  select(id) {
    this.selected = id;
    this.reveal(id);
    this.draw();
  }

  place() {
    const {lanes, instants} = this.structure;
    const spans = [];
    this.members = Array.from({length: instants}, () => []);
    lanes.forEach((lane, row) => lane.marks.forEach(([id, instant], i) => {
      this.members[instant].push({row, id});
      if (i > 0 && lane.marks[i - 1][1] < instant) {
        spans.push({from: lane.marks[i - 1][1], to: instant, width: cellWidth(lane.cells[i - 1]) * this.zoom});
      }
    }));
    this.places = findPlaces(instants, spans);
    this.positions.clear();
    lanes.forEach((lane, row) => lane.marks.forEach(([id, instant], i) => {
      const position = {at: this.places[instant], row};
      this.positions.set(id, position);
      lane.cells[i]?.forEach((token) => this.positions.set(token.id, position));
    }));
    this.canvas.style.width = `${this.places.reduce((a, b) => Math.max(a, b), 0) + 4}px`;
    this.canvas.style.height = `${lanes.length * laneHeight}px`;
  }

  reveal(id) {
    const position = this.positions.get(id);
    if (!position) return;
    const {scrollLeft: left, clientWidth: width} = this.scroller;
    if (position.at < left || position.at > left + width - 80) {
      this.scroller.scrollLeft = position.at - width / 3;
    }
    const {scrollTop: top, clientHeight: height} = this.root;
    const y = position.row * laneHeight;
    if (y < top || y > top + height - 2 * laneHeight) this.root.scrollTop = y - height / 3;
  }

  drawSoon() {
    this.waiting ??= requestAnimationFrame(() => {
      this.waiting = undefined;
      this.draw();
    });
  }

  draw() {
    const from = this.scroller.scrollLeft - margin;
    const to = this.scroller.scrollLeft + this.scroller.clientWidth + margin;
    const parts = [];
    this.structure.lanes.forEach((lane, row) => {
      for (let i = 0; i + 1 < lane.marks.length; ++i) {
        const left = this.places[lane.marks[i][1]];
        const right = this.places[lane.marks[i + 1][1]];
        if (right >= from && left <= to) parts.push(...this.drawCell(lane, row, lane.cells[i], left, right));
      }
    });
    this.members.forEach((members, instant) => {
      const at = this.places[instant];
      if (at >= from && at <= to) parts.push(...this.drawInstant(members, at));
    });
    this.canvas.replaceChildren(...parts);
  }

  drawCell(lane, row, cell, left, right) {
    const top = row * laneHeight + (laneHeight - tokenHeight) / 2;
    const box = (className, from, to) => {
      const made = element('div', {className});
      Object.assign(made.style, {
        left: `${from + 2}px`, top: `${top}px`, width: `${Math.max(to - from - 3, 4)}px`,
        height: `${tokenHeight}px`, lineHeight: `${tokenHeight - 2}px`,
      });
      return made;
    };
    if (cell.length === 0) return [box('gap', left, right)];
    const width = (right - left) / cell.length;
    return cell.map((token, i) => {
      const made = box('token', left + i * width, left + (i + 1) * width);
      made.style.setProperty('--hue', hues[lane.stream % hues.length]);
      made.textContent = nameOf(token);
      made.title = [lane.name, ...lane.fields.map((field, k) =>
        `${isolatedText(field.name)}: ${isolatedText(brief(token.values[k] ?? '', longestHint))}`)].join('\n');
      this.dress(made, token.id);
      return made;
    });
  }

  // The marks of an instant, and lines between those of lanes that follow each other.
  drawInstant(members, at) {
    const parts = [];
    members.forEach(({row, id}, i) => {
      const mark = element('div', {className: 'mark', title: members.length > 1 ? `a mark of ${members.length} that are tied` : 'a mark'});
      const top = row * laneHeight + 1;
      Object.assign(mark.style, {left: `${at}px`, top: `${top}px`, height: `${laneHeight - 2}px`});
      this.dress(mark, id);
      parts.push(mark);
      if (i === 0) return;
      const from = (members[i - 1].row + 1) * laneHeight - 1;
      const tie = element('div', {className: 'tie'});
      Object.assign(tie.style, {left: `${at}px`, top: `${from}px`, height: `${top - from}px`});
      parts.unshift(tie);
    });
    return parts;
  }

  dress(made, id) {
    made.dataset.id = id;
    made.classList.toggle('changed', this.changed.has(id));
    made.classList.toggle('fresh', Boolean(this.fresh) && this.changed.has(id));
    made.classList.toggle('selected', this.selected === id);
  }

  // The token with an identifier and its lane; null if there is none.
  find(id) {
    for (const lane of this.structure.lanes) {
      for (const cell of lane.cells) {
        const token = cell.find((one) => one.id === id);
        if (token) return {lane, token};
      }
    }
    return null;
  }
}
