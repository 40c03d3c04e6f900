// Making elements, and what counts as a tap on one.

export function element(tag, properties = {}, ...children) {
  const made = Object.assign(document.createElement(tag), properties);
  made.append(...children);
  return made;
}

// A name from the engine inside of a line: one that is written from right to left must not turn
// the rest of the line around. The second one is for lines without elements.
export const isolated = (text) => element('bdi', {textContent: text});
export const isolatedText = (text) => `\u2068${text}\u2069`;

// The beginning of a longer text.
export const brief = (text, most) => (
  text.length > most ? `${[...text.slice(0, most)].slice(0, -1).join('')}…` : text);

const slack = 8;  // pixels that a finger moves in a tap

// Calls the action with the item that was tapped, clicked with the main button, or activated by the
// keyboard. A finger that scrolls, a drag and a right click are none of these. Where the press began
// counts: what is under the pointer may be drawn anew until it ends, and a click would be lost.
export function onTap(root, selector, action) {
  let press;
  const forget = () => { press = undefined; };
  root.addEventListener('pointerdown', (event) => {
    const item = event.target.closest(selector);
    const main = event.isPrimary && event.button === 0 && !event.ctrlKey;
    press = main && item ? {item, x: event.clientX, y: event.clientY} : undefined;
  });
  root.addEventListener('pointercancel', forget);
  root.addEventListener('contextmenu', forget);
  root.addEventListener('pointerup', (event) => {
    const item = press && Math.hypot(event.clientX - press.x, event.clientY - press.y) <= slack && press.item;
    forget();
    if (item) action(item);
  });
  root.addEventListener('click', (event) => {
    const item = event.detail === 0 && event.target.closest(selector);  // no pointer was there
    if (item) action(item);
  });
}
