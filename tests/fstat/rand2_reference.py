#!/usr/bin/env python3
"""The random stream, written down a second time: exact integers instead of Schrage's method.

Park and Miller's minimal standard generator with a Bays-Durham shuffle table. For each seed named
on the command line it prints one line: the seed, the first 1000 draws and the 100000th, each as the
eight hexadecimal digits of its single-precision bits.

    rand2_reference.py 1 -5
    1 3ed4fdde 3dbc5817 ...
"""
import struct
import sys

MULTIPLIER = 16807
MODULUS = 2**31 - 1
TABLE_SIZE = 32
TABLE_DIVISOR = 2**26
SCALE = 4.656612875245797e-10
LIMIT = 0.99999988

FIRST = 1000
LAST = 100000


def single(value):
    """The bits of `value` rounded to single precision."""
    return struct.pack(">f", value).hex()


def draws(seed):
    """Yields the stream of a seed, in double precision, as it is before the rounding."""
    state = seed
    last = 0
    table = [0] * TABLE_SIZE
    while True:
        if state <= 0 or last == 0:
            if state <= 0:
                state = -state or 1
            for j in reversed(range(TABLE_SIZE + 8)):
                state = state * MULTIPLIER % MODULUS
                if j < TABLE_SIZE:
                    table[j] = state
            last = table[0]
        state = state * MULTIPLIER % MODULUS
        j = last // TABLE_DIVISOR
        last, table[j] = table[j], state
        yield last * SCALE


def bits(value):
    rounded = struct.unpack(">f", struct.pack(">f", value))[0]
    return single(LIMIT if rounded > LIMIT else rounded)


def main():
    for seed in map(int, sys.argv[1:]):
        words = [str(seed)]
        for number, value in enumerate(draws(seed), start=1):
            if number <= FIRST or number == LAST:
                words.append(bits(value))
            if number == LAST:
                break
        print(*words)


if __name__ == "__main__":
    main()
