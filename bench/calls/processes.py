"""The programs of the benchmark: a server, the clients under measurement, and commands that are run and timed."""

import os
import subprocess

FIELDS = ("wall", "cpu", "instructions", "allocations", "bytes", "peak")
NOT_BUILT = 3


class Failure(Exception):
    pass


def cpus():
    """The CPU of what is measured, and that of the servers; the same one if there is no other."""
    usable = sorted(os.sched_getaffinity(0))
    return usable[0], usable[-1]


def pinned(cpu):
    return lambda: os.sched_setaffinity(0, {cpu})


def start(command, cpu, env=None):
    return subprocess.Popen([str(part) for part in command], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                            env=env, preexec_fn=pinned(cpu))


def answer_of(line):
    """A line of qv_bench_peer as figures; an instruction count of -1 is none."""
    figures = dict(zip(FIELDS, map(int, line.split())))
    if figures["instructions"] < 0:
        figures["instructions"] = None
    if "peak" in figures:
        figures["peak"] *= 1024
    return figures


class Client:
    """A client in its own process, which waits until it is asked for calls."""

    def __init__(self, command, calls, cpu, env=None):
        self.command = command
        self.calls = calls
        self.process = start(command, cpu, env)
        line = self.process.stdout.readline()
        self.is_built = bool(line) or self.process.wait() != NOT_BUILT
        if self.is_built:
            self.first = self.figures(line)

    def figures(self, line):
        if not line:
            raise Failure(f"{' '.join(map(str, self.command))}: failed")
        return answer_of(line)

    def measure(self):
        """Figures per call."""
        self.process.stdin.write(f"{self.calls}\n")
        self.process.stdin.flush()
        figures = self.figures(self.process.stdout.readline())
        return {name: value if value is None else value / self.calls for name, value in figures.items()}

    def end(self):
        self.process.stdin.close()
        if self.process.wait() not in (0, NOT_BUILT):
            raise Failure(f"{' '.join(map(str, self.command))}: failed")
        self.process.stdout.close()


class Server:
    """A server that prints `lines` addresses and ends with its standard input, or when it is terminated."""

    def __init__(self, command, lines, cpu):
        self.process = start(command, cpu)
        self.urls = [self.process.stdout.readline().strip() for _ in range(lines)]
        if not all(self.urls):
            raise Failure(f"{command[0]}: failed")

    def end(self):
        self.process.stdin.close()
        self.process.terminate()
        self.process.wait()
        self.process.stdout.close()


def usage(launcher, command, cpu, env):
    """CPU time of a program and of all that it starts, and its peak memory."""
    done = subprocess.run([str(part) for part in (launcher, *command)], stdout=subprocess.PIPE, text=True, env=env,
                          preexec_fn=pinned(cpu))
    if done.returncode != 0:
        raise Failure(f"{' '.join(map(str, command))}: exit code {done.returncode}")
    microseconds, kilobytes = map(int, done.stdout.split())
    return {"cpu_ms": microseconds / 1000, "peak_mb": kilobytes * 1024 / 1e6}
