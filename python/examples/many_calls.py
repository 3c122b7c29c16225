"""Several calls at once: one session for each of them, and a limit for all.

    many_calls.py http://127.0.0.1:8080
"""

import asyncio
import sys

import scriptwells


async def square(server: str, number: int) -> int:
    with scriptwells.connect(server, "joe", "secret") as session:
        answer: int = await session.run_async("parameters.n * parameters.n", n=number)
        return answer


async def main(server: str) -> None:
    calls = [square(server, number) for number in range(5)]
    print(await asyncio.wait_for(asyncio.gather(*calls), timeout=30))


if __name__ == "__main__":
    asyncio.run(main(sys.argv[1] if len(sys.argv) > 1 else "http://127.0.0.1:8080"))
