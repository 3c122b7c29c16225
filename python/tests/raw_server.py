"""A server on a socket, for answers that the development service never gives."""

import contextlib
import socket
import threading

HEAD = b"HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nContent-Length: 100\r\n\r\n"


def read_request(connection):
    """Reads a request with its body, as far as it comes."""
    received = b""
    while b"\r\n\r\n" not in received:
        received += connection.recv(65536)
    head, _, body = received.partition(b"\r\n\r\n")
    lines = head.lower().split(b"\r\n")
    length = next((int(line.split(b":")[1]) for line in lines if line.startswith(b"content-length:")), 0)
    while len(body) < length:
        body += connection.recv(65536)
    return head + b"\r\n\r\n" + body


@contextlib.contextmanager
def raw_server(serve, wrap=None):
    """Yields the address of a server that calls `serve` with each connection, and closes it after that."""
    listener = socket.create_server(("127.0.0.1", 0))
    ended = threading.Event()

    def accept():
        while True:
            try:
                connection, _ = listener.accept()
            except OSError:
                return
            with connection, contextlib.suppress(OSError):
                if wrap is None:
                    serve(connection, ended)
                else:
                    with wrap(connection) as wrapped:
                        serve(wrapped, ended)

    thread = threading.Thread(target=accept)
    thread.start()
    try:
        yield f"127.0.0.1:{listener.getsockname()[1]}"
    finally:
        ended.set()
        listener.shutdown(socket.SHUT_RDWR)
        listener.close()
        thread.join()
