"""A server that gives every request one answer, which the development service gave before. It is another process."""

import contextlib
import multiprocessing
import re
import socket


def recorded(service, script):
    """The service's answer to a script, as the bytes of its body."""
    seen = []
    with service.connect(listener=seen.append) as session:
        session.run(script, a=2, b=40)
    return next(exchange.answer_body for exchange in seen if exchange.purpose == "execute")


def with_rows_repeated(body, times):
    return re.sub(
        rb"(<q1:Records>)(.*)(</q1:Records>)", lambda found: found[1] + found[2] * times + found[3], body, flags=re.S
    )


def serve(connection, answer):
    received = b""
    while True:
        while b"\r\n\r\n" not in received:
            more = connection.recv(1 << 20)
            if not more:
                return
            received += more
        head, _, received = received.partition(b"\r\n\r\n")
        length = int(re.search(rb"content-length: *(\d+)", head, re.I)[1])
        while len(received) < length:
            received += connection.recv(1 << 20)
        received = received[length:]
        connection.sendall(answer)


def accept(listener, answer):
    while True:
        connection, _ = listener.accept()
        with connection:
            connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            serve(connection, answer)


@contextlib.contextmanager
def replay(body):
    """Yields the server's address. It serves one connection after the other."""
    head = f"HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: {len(body)}\r\n\r\n"
    with socket.create_server(("127.0.0.1", 0)) as listener:
        process = multiprocessing.get_context("fork").Process(target=accept, args=(listener, head.encode() + body))
        process.start()
        try:
            yield f"http://127.0.0.1:{listener.getsockname()[1]}"
        finally:
            process.terminate()
            process.join()
