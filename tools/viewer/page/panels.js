// What stands below the streams: a token's fields, the variables, the messages.

import {element} from './tiers.js';

async function ask(path, wish) {
  const answer = await fetch(path, {
    method: 'POST', headers: {'Content-Type': 'application/json'}, body: JSON.stringify(wish),
  });
  return (await answer.json()).error;
}

export const askToDisconnect = () => ask('/disconnect', {});

const patience = 4000;  // milliseconds until an engine that does not answer is worth a word

export class TokenPanel {
  constructor(root) {
    this.root = root;
    this.show(null, '', false);
  }

  // A token and its lane, or null; why it cannot be edited, or nothing; whether it has just changed.
  show(found, whyNot, changed) {
    const shown = JSON.stringify([found?.token.id, found?.lane.stream, found?.lane.fields]);
    if (shown !== this.shown) this.build(found);
    this.shown = shown;
    if (!found) return;
    this.title.textContent = `${found.token.values[0] ?? ''} of ${found.lane.name}`;
    this.inputs.forEach((input, i) => this.update(input, found.token.values[i] ?? '', whyNot));
    if (changed || whyNot !== this.whyNot) this.say(whyNot ?? '');
    this.whyNot = whyNot;
  }

  build(found) {
    const parts = [element('h2', {textContent: 'Token'})];
    this.inputs = [];
    this.whyNot = undefined;
    this.title = element('p', {textContent: 'Click a token to see its fields.'});
    this.message = element('p', {id: 'token-message'});
    const forms = found?.lane.fields.map((field, i) => this.fieldForm(found.token, field, i)) ?? [];
    this.root.replaceChildren(...parts, this.title, ...forms, this.message);
  }

  // What is being typed stays.
  update(input, value, whyNot) {
    const typing = input.value !== input.told;
    if (input.tagName === 'SELECT' && ![...input.options].some((option) => option.value === value)) {
      input.prepend(element('option', {value, textContent: value}));
    }
    if (!typing || input.value === value) input.value = value;
    input.told = value;
    input.disabled = Boolean(whyNot);
    input.button.disabled = Boolean(whyNot);
  }

  say(text, isError = false) {
    clearTimeout(this.waiting);
    this.message.textContent = text;
    this.message.classList.toggle('error', isError);
  }

  fieldForm(token, field, index) {
    // A value is sent as one word.
    const choice = (text) => element('option', {value: text, textContent: text, disabled: /\s/.test(text)});
    const input = field.values.length
      ? element('select', {}, ...field.values.map(choice))
      : element('input', {autocomplete: 'off', spellcheck: false});
    input.setAttribute('aria-label', field.name);
    input.told = input.value;
    input.button = element('button', {textContent: 'Set'});
    const label = element('label', {}, field.name, element('small', {textContent: field.type}));
    const form = element('form', {className: 'field'}, label, input, input.button);
    form.addEventListener('submit', (event) => {
      event.preventDefault();
      this.set(token.id, index, input.value);
    });
    return form;
  }

  async set(id, index, value) {
    this.say('asking');
    const error = await ask('/field', {token: id, field: index, value})
      .catch(() => 'the viewer does not answer');
    if (error) return this.say(error, true);
    if (this.message.textContent !== 'asking') return;  // the change was faster
    this.say('asked; the engine answers when it polls its requests');
    this.waiting = setTimeout(() => this.say('asked; the engine has reported no change yet'), patience);
  }
}

export class VariablesPanel {
  constructor(root, onSelect) {
    this.root = root;
    this.onSelect = onSelect;
    this.shown = '';
  }

  show(lists) {
    const shown = JSON.stringify(lists);
    if (shown === this.shown) return;
    this.shown = shown;
    const parts = [element('h2', {textContent: 'Variables'})];
    if (lists.length === 0) parts.push(element('p', {textContent: 'No variable lists.'}));
    for (const list of lists) {
      parts.push(element('p', {textContent: `list ${list.id}`}));
      parts.push(element('table', {}, ...list.variables.map((variable) => this.row(variable))));
    }
    this.root.replaceChildren(...parts);
  }

  row(variable) {
    const what = element('button', {className: 'link', textContent: variable.what, disabled: variable.content === 0});
    what.addEventListener('click', () => this.onSelect(variable.content));
    return element('tr', {}, element('td', {textContent: variable.name}), element('td', {}, what));
  }
}

export class LogPanel {
  static size = 200;

  constructor(root, onStep) {
    this.root = root;
    this.list = element('ol');
    this.root.replaceChildren(element('h2', {textContent: 'Messages'}), this.list);
    this.list.addEventListener('pointerdown', (event) => {
      const item = event.target.closest('li');
      if (item) onStep(Number(item.dataset.number));
    });
  }

  // The messages around one of them.
  async show(status, at, live) {
    const half = live ? LogPanel.size - 1 : LogPanel.size / 2;
    const from = Math.max(status.first, at - half);
    const answer = await fetch(`/entries?from=${from}&count=${LogPanel.size}`);
    const entries = await answer.json();
    const atEnd = this.root.scrollTop + this.root.clientHeight > this.root.scrollHeight - 30;
    this.list.replaceChildren(...entries.map((entry) => {
      const item = element('li', {className: entry.number === at ? 'here' : ''},
        element('span', {className: 'number', textContent: entry.number}),
        element('span', {className: 'number', textContent: entry.code < 0 ? '' : entry.code}),
        element('span', {className: entry.code < 0 ? 'own' : '', textContent: entry.words}));
      item.dataset.number = entry.number;
      return item;
    }));
    // Only this list is moved, not the whole page.
    const here = this.list.querySelector('.here');
    if (live && atEnd) this.root.scrollTop = this.root.scrollHeight;
    else if (!live && here) this.root.scrollTop = here.offsetTop - this.root.offsetTop - this.root.clientHeight / 2;
    return entries.find((entry) => entry.number === at);
  }
}
