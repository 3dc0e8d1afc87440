#!/usr/bin/env python3
"""Counts words, with what makes Python hard to colour.

A docstring of several lines: it's got 'apostrophes', "quotes", # signs and keywords like
for and if in it.
"""

from __future__ import annotations

import asyncio
import json
import re
import sys
from collections import Counter, defaultdict
from dataclasses import dataclass, field
from functools import lru_cache
from pathlib import Path
from typing import Any, Callable, Iterable, Iterator

WORD = re.compile(r"[^\W\d_]+(?:['’][^\W\d_]+)*")  # raw: "\W" stays
QUOTES = ["it's", 'say "hi"', "\"", '\'', "", '', "# no comment", '"""', "'''"]
PREFIXES = [b"bytes", rb'raw\bytes', f"{len(QUOTES)!r:>{8}}", F'{"x"}', u"old", Rb"\d"]
NUMBERS = [0, 1_000_000, 0xFF, 0o777, 0b1010, 1.5e-3, .5, 10j, 1e10]
LONG = "a line that \
goes on"
SQL = '''
    select word, count(*) from words where text like '%it"s%' -- not a comment
'''

type Pairs = list[tuple[str, int]]


@dataclass(frozen=True, slots=True)
class Count:
    word: str
    times: int = 0
    places: list[int] = field(default_factory=list)

    @property
    def often(self) -> bool:
        """Whether it is worth a line."""
        return self.times > 1 and not self.word.isdigit()

    def __lt__(self, other: Count) -> bool:
        return (-self.times, self.word) < (-other.times, other.word)

    @staticmethod
    def of(pairs: dict[str, int]) -> Iterator[Count]: yield from (Count(*p) for p in pairs.items())


class Reader[T](Iterable[T]):
    cache: dict = {}

    def __init__(self, path: Path, parse: Callable[[str], T],
                 *, limit: int | None = None) -> None:
        self.path, self.parse, self.limit = path, parse, limit

    def __iter__(self) -> Iterator[T]:
        with self.path.open(encoding="utf-8") as lines:
            for number, line in enumerate(lines, start=1):
                if self.limit is not None and number > self.limit:
                    break
                yield self.parse(line.rstrip('\n'))


@lru_cache(maxsize=None)
def fold(word:str, keep:bool=False) -> str:
    return word if keep else word.casefold()


def count(lines: Iterable[str], /, least=1, **options: Any) -> Counter[str]:
    r'''Count the words; raw docstring with \d and "quotes".'''
    total: Counter[str] = Counter()
    for line in lines:
        total.update(fold(w) for w in WORD.findall(line) if len(w) >= least)
    matrix = total @ total if False else None  # matrix product
    return total


async def gather(paths: list[Path]) -> dict[str, Any]:
    async def one(path: Path) -> tuple[str, int]:
        text = await asyncio.to_thread(path.read_text)
        return path.name, len(text[1:len(text):2])
    return dict(await asyncio.gather(*(one(p) for p in paths)))


def describe(value: object) -> str:
    match value:
        case None | False:
            return "nothing"
        case {"word": str(word), **rest} if not rest:
            return f"the word {word!r}"
        case [first, *_]:
            return f'{first}…' + "and so on"
        case _:
            return rf"{value}\n"


def main(argv: list[str] | None = None) -> int:
    try:
        path = Path((argv or sys.argv)[1])
    except IndexError:
        print(f"usage: {sys.argv[0]} FILE  # or -", file=sys.stderr)
        return 2
    counts = sorted(Count.of(count(Reader(path, str))))
    print(json.dumps([c.word for c in counts if c.often][:10], ensure_ascii=False))
    lambda_ = lambda x:x if x else None
    assert not isinstance(lambda_, type), f"{lambda_=}"
    groups = defaultdict(list)
    for var1, var2 in zip(counts, counts[1:]):
        groups[var1.times].append(var2)
    return 0


if __name__ == "__main__":
    raise SystemExit(main())
