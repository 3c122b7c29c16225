"""Every phase of an error, with a real failure, and what the exceptions are."""

import builtins
import pathlib
import pickle
import re
import socket
import ssl
import struct
import subprocess
import threading

import pytest
from raw_server import HEAD, raw_server, read_request

import scriptwells


DOCUMENT = pathlib.Path(__file__).resolve().parents[2] / "docs" / "guide" / "errors.md"
covered = set()  # phases and classes


def row(phase, kind):
    """Marks the test of a row of the document."""
    covered.add((phase, kind.__name__))
    return lambda test: test


def failure(kind, phase, call, *arguments, **options):
    """The exception of the call, which must be of exactly this class and phase."""
    with pytest.raises(scriptwells.Error) as caught:
        call(*arguments, **options)
    assert type(caught.value) is kind
    assert caught.value.phase == phase
    assert str(caught.value)
    return caught.value


def silent(connection, ended):
    read_request(connection)
    ended.wait(10)


def half_and_silent(connection, ended):
    read_request(connection)
    connection.sendall(HEAD + b"<soap")
    ended.wait(10)


def half_and_gone(connection, ended):
    read_request(connection)
    connection.sendall(HEAD + b"<soap")


def gone(connection, ended):
    read_request(connection)


def page(connection, ended):
    read_request(connection)
    connection.sendall(HEAD.replace(b"100", b"18") + b"<html>hello</html>")


def reads_nothing(connection, ended):
    ended.wait(10)


def reset_after_head(connection, ended):
    """Ends the connection while the client still sends."""
    connection.recv(1024)
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


@row("address", scriptwells.Error)
def test_address():
    error = failure(scriptwells.Error, "address", scriptwells.connect, "nowhere")
    assert str(error) == "server 'nowhere' does not begin with http:// or https://"
    assert (error.code, error.server_message, error.line, error.column, error.status) == (None,) * 5


@row("connect", scriptwells.ConnectionError)
def test_connect():
    with socket.create_server(("127.0.0.1", 0)) as listener:
        port = listener.getsockname()[1]
    failure(scriptwells.ConnectionError, "connect", scriptwells.connect, f"http://127.0.0.1:{port}")
    failure(scriptwells.ConnectionError, "connect", scriptwells.connect, "http://no-such-host.invalid")


@row("connect", scriptwells.TimeoutError)
def test_connect_takes_too_long():
    # A queue of connections that nobody accepts.
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        listener.listen(0)
        address = listener.getsockname()
        waiting = [socket.socket() for _ in range(3)]
        for each in waiting:
            each.setblocking(False)
            each.connect_ex(address)
        url = f"http://127.0.0.1:{address[1]}"
        failure(scriptwells.TimeoutError, "connect", scriptwells.connect, url, connect_timeout=0.2)
        for each in waiting:
            each.close()


@row("TLS", scriptwells.ConnectionError)
def test_tls(tmp_path):
    certificate, key = tmp_path / "certificate.pem", tmp_path / "key.pem"
    subprocess.run(
        ["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-days",
         "1", "-subj", "/CN=127.0.0.1", "-keyout", key, "-out", certificate],
        check=True, capture_output=True)  # fmt: skip
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(certificate, key)
    with raw_server(silent, lambda connection: context.wrap_socket(connection, server_side=True)) as address:
        error = failure(scriptwells.ConnectionError, "TLS", scriptwells.connect, f"https://{address}")
    assert "connect(authorities=...)" in str(error)


@row("TLS", scriptwells.TimeoutError)
def test_tls_takes_too_long():
    with raw_server(reads_nothing) as address:
        failure(scriptwells.TimeoutError, "TLS", scriptwells.connect, f"https://{address}", connect_timeout=0.3)


@row("send", scriptwells.ConnectionError)
def test_send():
    script = "'" + "x" * 50_000_000 + "'"
    with raw_server(reset_after_head) as address:
        session = scriptwells.connect(f"http://{address}", session_id="A")
        failure(scriptwells.ConnectionError, "send", session.run, script)


@row("send", scriptwells.TimeoutError)
def test_send_takes_too_long():
    script = "'" + "x" * 50_000_000 + "'"
    with raw_server(reads_nothing) as address:
        session = scriptwells.connect(f"http://{address}", session_id="A", silence_timeout=0.3)
        failure(scriptwells.TimeoutError, "send", session.run, script)


@row("wait", scriptwells.ConnectionError)
@row("wait", scriptwells.TimeoutError)
def test_wait():
    with raw_server(gone) as address:
        failure(scriptwells.ConnectionError, "wait", scriptwells.connect, f"http://{address}")
    with raw_server(silent) as address:
        url = f"http://{address}"
        failure(scriptwells.TimeoutError, "wait", scriptwells.connect, url, silence_timeout=0.1)


def test_total_time(session):
    slow = session.with_options(timeout=0.2)
    error = failure(scriptwells.TimeoutError, "wait", slow.run, "for (;;) ;")
    assert "the option timeout" in str(error)


@row("receive", scriptwells.ConnectionError)
@row("receive", scriptwells.TimeoutError)
def test_receive():
    with raw_server(half_and_gone) as address:
        failure(scriptwells.ConnectionError, "receive", scriptwells.connect, f"http://{address}")
    with raw_server(half_and_silent) as address:
        url = f"http://{address}"
        failure(scriptwells.TimeoutError, "receive", scriptwells.connect, url, silence_timeout=0.1)


@row("answer", scriptwells.Error)
def test_answer():
    with raw_server(page) as address:
        error = failure(scriptwells.Error, "answer", scriptwells.connect, f"http://{address}")
    assert error.status == 200


def test_answer_that_is_lost_under_strict(session):
    assert session.run("typed.long(5)") is None
    failure(scriptwells.ConversionError, "conversion", session.with_options(strict=True).run, "typed.long(5)")


@row("session", scriptwells.SessionError)
def test_session():
    with scriptwells.serve(users={"joe": "secret"}) as service:
        error = failure(scriptwells.SessionError, "session", scriptwells.connect, service.url, "joe", "wrong")
        assert error.code == 1003
        assert error.server_message
        error = failure(scriptwells.SessionError, "session", scriptwells.connect, service.url)
        assert "connect(url, user, password)" in str(error)


@row("script", scriptwells.ScriptError)
def test_script(session):
    error = failure(scriptwells.ScriptError, "script", session.run, "\nthrow new ScriptError(5, 'no such customer')")
    assert str(error) == "no such customer"
    assert (error.code, error.server_message, error.status) == (5, "no such customer", 200)
    error = failure(scriptwells.ScriptError, "script", session.run, "\n\nfoo")
    assert error.line == 3


@row("local file", scriptwells.Error)
def test_local_file(session, tmp_path):
    missing = tmp_path / "missing"
    failure(scriptwells.Error, "local file", session.run, "1", doc=missing)
    failure(scriptwells.Error, "local file", session.run_document, missing)
    failure(scriptwells.Error, "local file", session.download, session.url + "/files/1", missing)


def test_home_without_upload_scripts(scriptwells_service, tmp_path):
    with scriptwells_service.connect(home_directory=tmp_path) as session:
        document = tmp_path / "document"
        document.write_text("text")
        error = failure(scriptwells.Error, "local file", session.run, "1", doc=document)
        assert "connect(home_directory=...)" in str(error)


def test_download(session, tmp_path):
    error = failure(scriptwells.Error, "answer", session.download, session.url + "/files/none", tmp_path)
    assert error.status == 404
    assert "a file belongs to the session that made it" in str(error)


def test_files_that_are_kept(scriptwells_service, tmp_path):
    (tmp_path / "out.txt").write_text("mine")
    with scriptwells_service.connect(replace_files=False) as session:
        url = session.run("publish('out.txt', 'text')")
        error = failure(scriptwells.Error, "local file", session.download, url, tmp_path)
        assert "connect(replace_files=True)" in str(error)
        url = session.run("publish('.out', 'text')")
        error = failure(scriptwells.Error, "answer", session.download, url, tmp_path)
        assert "connect(hidden_files=True)" in str(error)


@row("conversion", scriptwells.ConversionError)
def test_conversion(session):
    error = failure(scriptwells.ConversionError, "conversion", session.run, "1", v=float("nan"))
    assert str(error).startswith("argument 'v'")


@row("cancelled", scriptwells.CancelledError)
def test_cancelled(session):
    token = scriptwells.CancelToken()
    timer = threading.Timer(0.2, token.cancel)
    timer.start()
    failure(scriptwells.CancelledError, "cancelled", session.with_options(cancel=token).run, "for (;;) ;")
    timer.join()
    assert token.cancelled
    assert session.run("1") == 1
    failure(scriptwells.CancelledError, "cancelled", session.with_options(cancel=token).run, "1")
    token.reset()
    assert session.with_options(cancel=token).run("1") == 1


def test_every_row_of_the_document_has_a_test():
    rows = set()
    phase = ""
    for cells in re.findall(r"^\|(.*?)\|(.*?)\|", DOCUMENT.read_text(), re.M):
        phase = "".join(re.findall('"(.*)"', cells[0])) or phase
        rows |= {(phase, kind) for kind in re.findall("`(\\w*Error)`", cells[1])}
    assert len(rows) == 17
    assert rows == covered


def test_classes():
    assert issubclass(scriptwells.TimeoutError, builtins.TimeoutError)
    assert issubclass(scriptwells.ConnectionError, builtins.ConnectionError)
    assert issubclass(scriptwells.ConversionError, ValueError)
    for kind in ("ConnectionError", "TimeoutError", "SessionError", "ScriptError", "CancelledError", "ConversionError"):
        assert issubclass(getattr(scriptwells, kind), scriptwells.Error)
        assert getattr(scriptwells, kind).__module__ == "scriptwells"


@pytest.mark.parametrize("kind", [scriptwells.ScriptError, scriptwells.TimeoutError, scriptwells.ConnectionError])
def test_exceptions_travel_between_processes(kind):
    error = kind("no such customer", phase="script", code=5, server_message="text", line=3)
    copy = pickle.loads(pickle.dumps(error))
    assert type(copy) is kind
    assert str(copy) == "no such customer"
    assert vars(copy) == vars(error)
