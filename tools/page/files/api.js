// Calls of the service's interface. The browser adds the cookie, which scripts cannot read.
import {set} from './store.js';

// A call that failed. The status is 0 if there was no answer.
export class CallError extends Error {
  constructor(message, status) {
    super(message);
    this.status = status;
  }
}

async function messageOf(response) {
  const answer = await response.json().catch(() => null);
  return answer?.error?.message ?? `The service answered with status ${response.status}.`;
}

async function fetched(method, path, body, type) {
  try {
    return await fetch(path, {method, body, headers: type ? {'Content-Type': type} : {}});
  } catch {
    set('connection', 'lost');
    throw new CallError('The service does not answer.', 0);
  }
}

async function contentOf(response) {
  if (response.status === 401) set('connection', 'unknown');
  if (!response.ok) throw new CallError(await messageOf(response), response.status);
  if (response.status === 204) return null;
  try {
    return await response.json();
  } catch {
    throw new CallError('The answer of the service ended early.', 0);
  }
}

// Returns the JSON of the answer, or null if it has none. `json` is sent if it is given.
export async function call(method, path, json) {
  const body = json === undefined ? undefined : JSON.stringify(json);
  return contentOf(await fetched(method, `api/${path}`, body, body && 'application/json'));
}

// Exchanges the token of the page's address for a cookie.
export async function exchange(token) {
  return contentOf(await fetched('POST', 'enter', JSON.stringify({token}), 'application/json'));
}

// Sends a file; onProgress is called with the part that is sent, 0 to 1.
export function upload(file, onProgress) {
  return new Promise((resolve, reject) => {
    const request = new XMLHttpRequest();
    request.open('POST', `api/files?name=${encodeURIComponent(file.name)}`);
    request.setRequestHeader('Content-Type', 'application/octet-stream');
    request.responseType = 'json';
    request.upload.onprogress = (event) => onProgress(event.total ? event.loaded / event.total : 0);
    request.onerror = () => reject(new CallError('The upload broke off.', 0));
    request.onload = () => {
      if (request.status >= 200 && request.status < 300) resolve(request.response);
      else
        reject(
          new CallError(
            request.response?.error?.message ?? `The service answered with status ${request.status}.`,
            request.status,
          ),
        );
    };
    request.send(file);
  });
}
