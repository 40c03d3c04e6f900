// What stands below the streams: a token's fields, the variables, the messages.

import {element} from './tiers.js';

async function ask(path, wish) {
  const answer = await fetch(path, {
    method: 'POST', headers: {'Content-Type': 'application/json'}, body: JSON.stringify(wish),
  });
  return (await answer.json()).error;
}

export const askToDisconnect = () => ask('/disconnect', {});

export class TokenPanel {
  constructor(root) {
    this.root = root;
    this.shown = '';
    this.show(null, true);
  }

  // A token and its lane, or null; and why it cannot be edited, or nothing.
  show(found, whyNot) {
    const shown = JSON.stringify([found?.token, whyNot]);
    if (shown === this.shown) return;  // what is being typed stays
    this.shown = shown;
    const parts = [element('h2', {textContent: 'Token'})];
    if (!found) {
      parts.push(element('p', {textContent: 'Click a token to see its fields.'}));
    } else {
      const {lane, token} = found;
      parts.push(element('p', {textContent: `${token.values[0] ?? ''} of ${lane.name}`}));
      parts.push(...lane.fields.map((field, i) => this.fieldForm(token, field, i, whyNot)));
      this.message = element('p', {textContent: whyNot ?? '', id: 'token-message'});
      parts.push(this.message);
    }
    this.root.replaceChildren(...parts);
  }

  fieldForm(token, field, index, whyNot) {
    const value = token.values[index] ?? '';
    const input = field.values.length
      ? element('select', {}, ...[...new Set([value, ...field.values])].map((text) => element('option', {value: text, textContent: text})))
      : element('input', {autocomplete: 'off', spellcheck: false});
    input.value = value;
    input.disabled = Boolean(whyNot);
    input.name = field.name;
    input.setAttribute('aria-label', field.name);
    const button = element('button', {textContent: 'Set', disabled: Boolean(whyNot)});
    const label = element('label', {}, field.name, element('small', {textContent: field.type}));
    const form = element('form', {className: 'field'}, label, input, button);
    form.addEventListener('submit', async (event) => {
      event.preventDefault();
      const error = await ask('/field', {token: token.id, field: index, value: input.value})
        .catch(() => 'the viewer does not answer');
      this.message.textContent = error || 'asked; the engine answers when it polls its requests';
      this.message.classList.toggle('error', Boolean(error));
    });
    return form;
  }
}

export class VariablesPanel {
  constructor(root, onSelect) {
    this.root = root;
    this.onSelect = onSelect;
  }

  show(lists) {
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
    this.list.addEventListener('click', (event) => {
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
    if (live) this.root.scrollTop = this.root.scrollHeight;
    else if (here) this.root.scrollTop = here.offsetTop - this.root.offsetTop - this.root.clientHeight / 2;
    return entries.find((entry) => entry.number === at);
  }
}
