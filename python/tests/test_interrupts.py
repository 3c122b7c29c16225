"""Ctrl-C, threads, and asyncio."""

import asyncio
import os
import signal
import threading
import time
from concurrent.futures import ThreadPoolExecutor

import pytest

import scriptwells

ENDLESS = "for (;;) ;"


def test_keyboard_interrupt_ends_the_call(session):
    timer = threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT))
    begin = time.monotonic()
    timer.start()
    with pytest.raises(KeyboardInterrupt):
        session.run(ENDLESS)
    assert time.monotonic() - begin < 1.5
    timer.join()
    assert session.run("6 * 7") == 42


def test_keyboard_interrupt_ends_connecting():
    import socket

    with socket.create_server(("127.0.0.1", 0)) as listener:
        timer = threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT))
        timer.start()
        with pytest.raises(KeyboardInterrupt):
            scriptwells.connect(f"http://127.0.0.1:{listener.getsockname()[1]}")
        timer.join()


def test_other_signals_do_not_end_the_call(session):
    seen = []
    before = signal.signal(signal.SIGUSR1, lambda *_: seen.append(time.monotonic()))
    try:
        timer = threading.Timer(0.2, os.kill, (os.getpid(), signal.SIGUSR1))
        timer.start()
        end = "var end = Date.now() + 1000; while (Date.now() < end); 'done'"
        assert session.run(end) == "done"
        ended = time.monotonic()
        timer.join()
        assert seen and ended - seen[0] > 0.3  # it was handled during the call
    finally:
        signal.signal(signal.SIGUSR1, before)


def test_other_threads_run_during_a_call(session):
    count = 0
    ending = threading.Event()

    def work():
        nonlocal count
        while not ending.wait(0.001):
            count += 1

    thread = threading.Thread(target=work)
    thread.start()
    with pytest.raises(scriptwells.TimeoutError):
        session.with_options(timeout=0.5).run(ENDLESS)
    ending.set()
    thread.join()
    assert count > 50


def test_many_threads_with_sessions_of_their_own(scriptwells_service):
    def work(number):
        with scriptwells_service.connect() as session:
            return [session.run("parameters.a * parameters.b", a=number, b=n) for n in range(20)]

    with ThreadPoolExecutor(8) as pool:
        assert list(pool.map(work, range(16))) == [[a * b for b in range(20)] for a in range(16)]


def test_many_threads_with_one_session(session):
    with ThreadPoolExecutor(8) as pool:
        assert list(pool.map(lambda n: session.run("parameters.n", n=n), range(100))) == list(range(100))


def test_async_calls_keep_their_order(scriptwells_service):
    async def main(session):
        calls = [session.run_async("parameters.n", n=n) for n in range(20)]
        return await asyncio.gather(*calls)

    with scriptwells_service.connect() as session:
        assert asyncio.run(main(session)) == list(range(20))
    bodies = [seen.body for seen in scriptwells_service.requests() if seen.action == "Execute"]
    numbers = [int(body.split(b"xsd:int\">")[1].split(b"<")[0]) for body in bodies]
    assert numbers == list(range(20))


def test_sessions_run_at_once(scriptwells_service):
    async def main():
        with scriptwells_service.connect() as a, scriptwells_service.connect() as b:
            await asyncio.gather(a.run_async("1"), b.run_async("1"))  # the workers have started
            wait = "var end = Date.now() + 500; while (Date.now() < end); 1"
            begin = time.monotonic()
            assert await asyncio.gather(a.run_async(wait), b.run_async(wait)) == [1, 1]
            return time.monotonic() - begin

    assert asyncio.run(main()) < 0.95


def test_errors_of_async_calls(session):
    async def main():
        with pytest.raises(scriptwells.ScriptError):
            await session.run_async("throw 'x'")
        with pytest.raises(OverflowError):
            await session.run_async("1", v=2**63)
        return await session.run_async("6 * 7")

    assert asyncio.run(main()) == 42


def test_cancelling_a_task_cancels_its_call(scriptwells_service):
    async def main(session):
        running = asyncio.create_task(session.run_async(ENDLESS))
        queued = asyncio.create_task(session.run_async("'never'"))
        await asyncio.sleep(0.3)
        running.cancel()
        queued.cancel()
        begin = time.monotonic()
        for task in (running, queued):
            with pytest.raises(asyncio.CancelledError):
                await task
        assert await session.run_async("6 * 7") == 42
        return time.monotonic() - begin

    with scriptwells_service.connect() as session:
        assert asyncio.run(main(session)) < 1.5
    assert not any(b"never" in seen.body for seen in scriptwells_service.requests())


def test_async_calls_with_a_timeout(session):
    async def main():
        with pytest.raises(asyncio.TimeoutError):
            await asyncio.wait_for(session.run_async(ENDLESS), 0.3)
        return await session.run_async("1")

    assert asyncio.run(main()) == 1


def test_the_end_waits_for_async_calls(scriptwells_service):
    async def main():
        with scriptwells_service.connect() as session:
            task = asyncio.ensure_future(session.run_async("'done'"))
            await asyncio.sleep(0)
        return await task

    assert asyncio.run(main()) == "done"
