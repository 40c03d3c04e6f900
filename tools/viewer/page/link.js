// The viewer program, seen from the page: questions, wishes, and news.

const questionTime = 20000;  // milliseconds until a question counts as unanswered
const wishTime = 5000;
const engineTime = 4000;     // until an engine that does not answer is worth a word
const retryTime = 3000;

export async function ask(path) {
  const answer = await fetch(path, {signal: AbortSignal.timeout(questionTime)});
  if (!answer.ok) throw new Error(`the viewer answers ${answer.status}`);
  return answer.json();
}

// What is wrong with a wish; nothing if it was passed on to the engine.
async function wish(path, what) {
  try {
    const answer = await fetch(path, {
      method: 'POST', headers: {'Content-Type': 'application/json'}, body: JSON.stringify(what),
      signal: AbortSignal.timeout(wishTime),
    });
    const isAnswer = answer.headers.get('Content-Type')?.startsWith('application/json');
    return isAnswer ? (await answer.json()).error : `the viewer refuses that (${answer.status})`;
  } catch {
    return 'the viewer does not answer';
  }
}

// A line that tells what becomes of a wish.
export class Notice {
  constructor(line) {
    this.line = line;
    this.wishes = 0;
  }

  say(text, isError = false) {
    clearTimeout(this.waiting);
    ++this.wishes;  // answers to earlier ones are old
    this.line.textContent = text;
    this.line.classList.toggle('error', isError);
  }

  async wish(path, what) {
    this.say('asking');
    const current = this.wishes;
    const error = await wish(path, what);
    if (current !== this.wishes) return;  // what was wished for was faster than the answer
    if (error) return this.say(error, true);
    this.say('asked; the engine answers when it polls its requests');
    this.waiting = setTimeout(() => this.say('asked; the engine has not answered yet'), engineTime);
  }
}

// Calls hear with every new status, and lose when the viewer program is gone. It serves so many
// pages with news, and lets others ask.
export function listen(hear, lose) {
  let events;
  let waiting;
  const askOnce = () => ask('/status').then(hear, lose);
  const begin = () => {
    clearTimeout(waiting);
    events?.close();
    events = undefined;
    // A browser has few connections for one server: a page that nobody sees gives its own back.
    if (document.hidden) return;
    const mine = events = new EventSource('/events');
    mine.addEventListener('message', (event) => hear(JSON.parse(event.data)));
    mine.addEventListener('error', () => {
      if (mine !== events) return;
      askOnce();
      // It tries again by itself, unless it was refused.
      if (mine.readyState === EventSource.CLOSED) waiting = setTimeout(begin, retryTime);
    });
  };
  document.addEventListener('visibilitychange', begin);
  begin();
}
