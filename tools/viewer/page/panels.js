// What stands below the streams beside the messages: a token's fields, the variables.

import {brief, element, isolated} from './dom.js';
import {Notice} from './link.js';

const longestTitle = 60;

export class TokenPanel {
  constructor(root) {
    this.root = root;
    this.notice = new Notice(element('p', {id: 'token-message', role: 'status'}));
    this.show(null, '', false);
  }

  // A token and its lane, or null; why it cannot be edited, or nothing; whether it has just changed.
  show(found, whyNot, changed) {
    const shown = JSON.stringify([found?.token.id, found?.lane.stream, found?.lane.fields]);
    if (shown !== this.shown) this.build(found);
    this.shown = shown;
    if (!found) return;
    this.title.replaceChildren(isolated(brief(found.token.values[0] ?? '', longestTitle)), ' of ', isolated(found.lane.name));
    this.inputs.forEach((input, i) => this.update(input, found.token.values[i] ?? '', whyNot, changed));
    if (changed || whyNot !== this.whyNot) this.notice.say(whyNot ?? '');
    this.whyNot = whyNot;
  }

  build(found) {
    this.whyNot = undefined;
    this.notice.say('');
    this.title = element('p', {textContent: 'Click a token to see its fields.'});
    this.inputs = found?.lane.fields.map((field) => this.makeInput(field)) ?? [];
    const forms = this.inputs.map((input, i) => this.fieldForm(found.token.id, i, input, found.lane.fields[i]));
    this.root.replaceChildren(element('h2', {textContent: 'Token'}), this.title, ...forms, this.notice.line);
  }

  makeInput(field) {
    // A value is sent as one word.
    const choice = (text) => element('option', {value: text, textContent: text, disabled: /\s/.test(text)});
    const input = field.values.length
      ? element('select', {}, ...field.values.map(choice))
      : element('input', {autocomplete: 'off', spellcheck: false});
    input.setAttribute('aria-label', field.name);
    input.button = element('button', {textContent: 'Set'});
    input.addEventListener('input', () => {
      input.draft = input.value;
      input.asked = false;
    });
    return input;
  }

  fieldForm(id, index, input, field) {
    const label = element('label', {}, field.name, element('small', {textContent: field.type}));
    const form = element('form', {className: 'field'}, label, input, input.button);
    form.addEventListener('submit', (event) => {
      event.preventDefault();
      if (this.whyNot) return;
      input.asked = true;
      this.notice.wish('/field', {token: id, field: index, value: input.value});
    });
    return form;
  }

  // What is being typed stays until the engine has answered it. Where nothing can be edited, as in
  // the past, it gives way to what the token holds.
  update(input, value, whyNot, changed) {
    if (input.draft === value || (changed && input.asked)) {
      input.draft = undefined;
      input.asked = false;
    }
    if (input.tagName === 'SELECT' && ![...input.options].some((option) => option.value === value)) {
      input.prepend(element('option', {value, textContent: value}));
    }
    const text = whyNot ? value : input.draft ?? value;
    if (input.value !== text) input.value = text;
    input.disabled = input.button.disabled = Boolean(whyNot);
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
