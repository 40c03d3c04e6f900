// The messages, as a list that follows them until somebody scrolls away.

import {element, onTap} from './dom.js';
import {ask} from './link.js';

const size = 200;   // messages that are listed
const margin = 30;  // pixels from the end that still count as the end

export class LogPanel {
  // onStep is called with the number of a message that was tapped, onFollow when somebody has
  // scrolled back to the end.
  constructor(root, onStep, onFollow) {
    this.root = root;
    this.list = element('ol');
    this.items = new Map();  // by number
    this.from = 1;
    this.live = true;
    this.following = true;
    this.top = 0;
    this.onFollow = onFollow;
    root.replaceChildren(element('h2', {textContent: 'Messages'}), this.list);
    onTap(this.list, 'li', (item) => onStep(Number(item.dataset.number)));
    root.addEventListener('scroll', () => this.heedScrolling());
    // With other lanes above it the panel has another height.
    new ResizeObserver(() => this.settle()).observe(root);
  }

  // Shows the messages around one of them; while live, the newest or those that somebody scrolled
  // to. Gives the entry, if it is listed.
  async show(status, at, live) {
    this.heedScrolling();
    const from = this.windowFor(status, at, live);
    const entries = await ask(`/entries?from=${from}&count=${size}`);
    this.heedScrolling();
    this.from = from;
    this.live = live;
    this.fill(entries, at);
    this.settle();
    return entries.find((entry) => entry.number === at);
  }

  follow() {
    this.following = true;
  }

  windowFor(status, at, live) {
    const newest = Math.max(status.first, status.last - size + 1);
    if (live && this.following) return newest;
    const kept = Math.min(Math.max(this.from, status.first), newest);
    const isListed = at >= kept && at < kept + size;
    return live || isListed ? kept : Math.max(status.first, Math.floor(at - size / 2));
  }

  // Items that stay are left alone: somebody may be pressing one, or marking its text.
  fill(entries, at) {
    const items = new Map();
    for (const entry of entries) {
      const known = this.items.get(entry.number);
      items.set(entry.number, known?.words === entry.words ? known : this.makeItem(entry));
    }
    const kept = new Set(items.values());
    for (const item of this.items.values()) if (!kept.has(item)) item.remove();
    let next = this.list.firstChild;
    for (const [number, item] of items) {
      if (item === next) next = next.nextSibling;
      else this.list.insertBefore(item, next);
      item.classList.toggle('here', number === at);
    }
    this.items = items;
  }

  makeItem(entry) {
    const own = entry.code < 0;
    const item = element('li', {},
      element('span', {className: 'number', textContent: entry.number}),
      element('span', {className: 'number', textContent: own ? '' : entry.code}),
      element('span', {className: own ? 'own' : '', textContent: entry.words}));
    item.dataset.number = entry.number;
    item.words = entry.words;
    return item;
  }

  isAtEnd() {
    return this.root.scrollTop + this.root.clientHeight > this.root.scrollHeight - margin;
  }

  // Who scrolls up wants to read; who scrolls to the end wants to see what comes. The list is not
  // left at the end either when its panel becomes smaller, but then nobody has scrolled up.
  heedScrolling() {
    const {scrollTop} = this.root;
    const followed = this.following;
    if (this.live && scrollTop !== this.top) {
      if (this.isAtEnd()) this.following = true;
      else if (scrollTop < this.top) this.following = false;
    }
    this.top = scrollTop;
    if (this.following && !followed) this.onFollow();
  }

  // Only this list is moved, not the whole page.
  settle() {
    const here = this.list.querySelector('.here');
    if (this.live && this.following) {
      this.root.scrollTop = this.root.scrollHeight;
    } else if (!this.live && here) {
      const at = here.offsetTop - this.root.offsetTop;
      const {scrollTop, clientHeight} = this.root;
      if (at < scrollTop || at + here.offsetHeight > scrollTop + clientHeight) {
        this.root.scrollTop = at - clientHeight / 2;
      }
    }
    this.top = this.root.scrollTop;
  }
}
