"""Sessions: opening, options, files, the end."""

import gc
import pathlib
import subprocess
import sys

import pytest

import scriptwells

DOCUMENT = pathlib.Path(__file__).parents[2] / "examples" / "document.xml"


def test_connect_with_everything(scriptwells_service):
    session = scriptwells.connect(
        scriptwells_service.url + "/",
        user="joe",
        password="secret",
        replica="",
        language="javascript",
        strict=True,
        timeout=5,
        connect_timeout=1.5,
        silence_timeout=2,
        close_timeout=1,
        least_bytes_per_second=1,
        most_answer_bytes=1000,
        proxy="",
        home_directory=scriptwells_service.home_directory,
        hidden_files=True,
        listener=lambda exchange: None,
        listener_bodies=False,
        show_secrets=True,
    )
    with session:
        assert session.url == scriptwells_service.url
        assert session.run("6 * 7") == 42
        with pytest.raises(scriptwells.Error, match="longer than|too long"):
            session.run("'x'.repeat(2000)")


def test_tapes(scriptwells_service, tmp_path):
    tape = tmp_path / "a.tape"

    def run(session):
        with session:
            return session.run("[{n: parameters.n}]", n=5)[0].n

    assert run(scriptwells_service.connect(record=tape)) == 5
    text = tape.read_text()
    assert "\n  n = int 5\n" in text and "<session:1>" in text
    name = text.split("Username=")[1].split(";")[0]
    assert run(scriptwells.connect("http://nowhere.invalid", name, replay=tape)) == 5
    with scriptwells.connect("http://nowhere.invalid", name, replay=str(tape)) as session:
        with pytest.raises(scriptwells.Error, match="is not on the tape"):
            session.run("2")
    with pytest.raises(scriptwells.Error, match="cannot read the tape"):
        scriptwells.connect("http://nowhere.invalid", replay=tmp_path / "none")


@pytest.mark.parametrize(
    ("option", "error"),
    [
        ({"timeout": -1}, ValueError),
        ({"timeout": "1"}, TypeError),
        ({"strict": "yes"}, TypeError),
        ({"certificate": 5}, TypeError),
        ({"silence_timeout": float("nan")}, ValueError),
        ({"authorities": "/none.pem"}, scriptwells.Error),
        ({"proxy": "http://a"}, scriptwells.Error),
        ({"user": "a;b"}, scriptwells.Error),
    ],
)
def test_options_that_cannot_be(option, error):
    with pytest.raises(error):
        scriptwells.connect("http://127.0.0.1:1", **option)


@pytest.mark.parametrize("name", ["url", "user", "password", "replica"])
def test_credentials_that_are_no_texts(name):
    given = {"url": "http://127.0.0.1:1", "user": "joe", "password": "top secret", name: 5}
    with pytest.raises(TypeError, match=f"the {name} must be a str, not int") as caught:
        scriptwells.connect(**given)
    assert "top secret" not in str(caught.value)


def test_scripts_that_are_no_texts(session):
    with pytest.raises(TypeError, match="the script must be a str, not int"):
        session.run(5)
    with pytest.raises(TypeError, match="the url must be a str, not NoneType"):
        session.download(None)
    with pytest.raises(scriptwells.ConversionError, match="the script is empty"):
        session.run("")


def test_a_process_may_end_with_an_open_session(scriptwells_service):
    code = f"""
import scriptwells
session = scriptwells.connect({scriptwells_service.url!r}, "joe", listener=lambda exchange: None)
session.run("1")
"""
    done = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True)
    assert (done.returncode, done.stderr) == (0, "")
    assert scriptwells_service.counts()["CloseUserSession"] == 1


def test_the_end_of_with(scriptwells_service):
    with scriptwells_service.connect() as session:
        assert len(session.id) == 32
    assert scriptwells_service.counts()["CloseUserSession"] == 1
    with pytest.raises(scriptwells.SessionError, match="the session is closed"):
        session.run("1")
    session.close()
    with pytest.raises(KeyError), scriptwells_service.connect() as session:
        raise KeyError
    assert scriptwells_service.counts()["CloseUserSession"] == 2


def test_with_keeps_quiet_when_the_server_is_gone(scriptwells_service):
    with scriptwells_service.connect() as session:
        scriptwells_service.close()
    with pytest.raises(ValueError, match="the service has ended"):
        print(scriptwells_service.url)
    assert session is not None


def test_close_reports_what_with_does_not(scriptwells_service):
    session = scriptwells_service.connect()
    scriptwells_service.order_fault(action="CloseUserSession", text="not now")
    with pytest.raises(scriptwells.SessionError, match="not now"):
        session.close(timeout=1)
    session.close()


def test_a_session_that_is_forgotten_is_closed(scriptwells_service):
    session = scriptwells_service.connect()
    del session
    gc.collect()
    assert scriptwells_service.counts()["CloseUserSession"] == 1


def test_sessions_are_handed_over(scriptwells_service):
    usid = scriptwells_service.connect().release()
    with scriptwells.connect(scriptwells_service.url, session_id=usid) as session:
        assert session.id == usid
        assert session.run("1") == 1
    assert "CloseUserSession" not in {r.action for r in scriptwells_service.requests()}
    scriptwells.connect(scriptwells_service.url, session_id=usid).close()
    assert scriptwells_service.counts()["CloseUserSession"] == 1


def test_documents(session):
    assert session.run_document(DOCUMENT, a=41) == "Grüße, Wörld! You sent: <a>"
    assert session.run_document(str(DOCUMENT), {"a": 41}) == "Grüße, Wörld! You sent: <a>"


def test_downloads(session, tmp_path):
    path = session.download(session.run("publish('out.txt', 'text')"), tmp_path)
    assert path == tmp_path / "out.txt"
    assert path.read_text() == "text"


def test_options_of_calls(session):
    with pytest.raises(scriptwells.ScriptError, match="language"):
        session.with_options(language="Cobol").run("1")
    both = session.with_options(strict=True).with_options(timeout=0.2)
    with pytest.raises(scriptwells.ConversionError):
        both.run("typed.long(5)")
    with pytest.raises(scriptwells.TimeoutError):
        both.run("for (;;) ;")
    assert both.with_options(strict=False, timeout=0).run("typed.long(5)") is None
    with pytest.raises(TypeError):
        session.with_options(timeout="1")


def test_listener(scriptwells_service):
    seen = []
    with scriptwells_service.connect(password="top secret", listener=seen.append) as session:
        session.run("'answer'")
    assert [exchange.purpose for exchange in seen] == ["open session", "execute", "close session"]
    execute = seen[1]
    assert execute.status == 200
    assert b"answer" in execute.answer_body
    assert execute.request_head.startswith(b"POST ")
    assert str(execute).startswith("POST ")
    assert 0 < execute.waiting <= execute.total
    assert b"top secret" not in seen[0].request_body


def test_what_a_listener_raises_reaches_the_caller(scriptwells_service):
    def refuse(exchange):
        if exchange.purpose == "execute":
            raise LookupError("mine")

    with scriptwells_service.connect(listener=refuse) as session:
        with pytest.raises(LookupError, match="mine"):
            session.run("1")
        with pytest.raises(LookupError, match="mine"):
            session.run("1")


def test_repr_shows_no_secret(session):
    assert session.id not in repr(session)
    assert session.url in repr(session)
