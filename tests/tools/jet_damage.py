# SPDX-License-Identifier: Apache-2.0
"""Ways of damaging a Jet file: functions of a random generator and the file's bytes that give the damaged
bytes.

Pages are 4096 bytes in Jet 4 and 2048 in Jet 3. The first byte of a page tells its kind: 0 the header, 1
rows, 2 a table's definition, 3 and 4 an index, 5 a usage map.
"""

ROWS, DEFINITION, INDEX, LEAF, USAGE_MAP = 1, 2, 3, 4, 5
# Numbers that programs stumble over.
TELLING = (0, 1, 0x7F, 0x80, 0xFF, 0x7FFF, 0x8000, 0xFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF)


def page_size(data):
    return 2048 if len(data) > 0x14 and data[0x14] == 0 else 4096


def pages_of(data, *kinds):
    """Where the pages of these kinds begin; where any page begins when there is none."""
    size = page_size(data)
    starts = range(size, len(data) - size + 1, size)
    chosen = [start for start in starts if data[start] in kinds]
    return chosen or list(starts) or [0]


def overwrite(data, at, new):
    """Puts bytes in place without making the file longer."""
    new = new[: max(0, len(data) - at)]
    data[at : at + len(new)] = new


def random_bytes(random, count):
    """All equal or each by chance."""
    if random.random() < 0.4:
        return bytes([random.choice((0, 0x20, 0x80, 0xFF))]) * count
    return random.randbytes(count)


def telling_number(random, width):
    number = random.choice(TELLING) if random.random() < 0.7 else random.getrandbits(8 * width)
    return (number & ((1 << 8 * width) - 1)).to_bytes(width, "little")


def single_bytes(random, data):
    for _ in range(random.randint(1, 8)):
        data[random.randrange(len(data))] = random.getrandbits(8)


def bits(random, data):
    for _ in range(random.randint(1, 20)):
        data[random.randrange(len(data))] ^= 1 << random.randrange(8)


def run(random, data):
    overwrite(data, random.randrange(len(data)), random_bytes(random, random.randint(2, 3000)))


def file_header(random, data):
    """The whole header or a few numbers of it."""
    if random.random() < 0.2:
        overwrite(data, 0, random_bytes(random, 0x100))
    for _ in range(random.randint(1, 4)):
        start = 0 if random.random() < 0.2 else 0x14
        overwrite(data, random.randrange(start, 0xA0), telling_number(random, random.choice((1, 2, 4))))


def page_header(random, data):
    start = random.choice(pages_of(data, ROWS, DEFINITION, USAGE_MAP))
    for _ in range(random.randint(1, 3)):
        overwrite(data, start + random.randrange(16), telling_number(random, random.choice((1, 2, 4))))


def slots(random, data):
    """The beginnings of rows on a page."""
    start = random.choice(pages_of(data, ROWS))
    first = start + (10 if page_size(data) == 2048 else 14)
    for _ in range(random.randint(1, 6)):
        overwrite(data, first + 2 * random.randrange(40), telling_number(random, 2))


def row_ends(random, data):
    """The ends of rows, where their offsets and Null masks stand."""
    size = page_size(data)
    start = random.choice(pages_of(data, ROWS))
    table = start + (8 if size == 2048 else 12)
    count = int.from_bytes(data[table : table + 2], "little")
    if count == 0 or count > 300:
        return single_bytes(random, data)
    for _ in range(random.randint(1, 4)):
        row = random.randrange(count)
        end = size if row == 0 else int.from_bytes(data[table + 2 * row : table + 2 * row + 2], "little") & 0x1FFF
        at = start + end - random.randint(1, 24)
        overwrite(data, max(0, min(at, len(data) - 1)), telling_number(random, random.choice((1, 2))))
    return None


def definitions(random, data):
    """Numbers within the definitions of tables, where counts, columns and indexes stand."""
    start = random.choice(pages_of(data, DEFINITION))
    reach = random.choice((64, 64, 400, page_size(data)))
    for _ in range(random.randint(1, 5)):
        overwrite(data, start + random.randrange(reach), telling_number(random, random.choice((1, 2, 4))))


def catalogue(random, data):
    """The definition of the catalogue and the pages of its rows."""
    size = page_size(data)
    own = (2).to_bytes(4, "little")
    starts = [start for start in pages_of(data, ROWS) if bytes(data[start + 4 : start + 8]) == own] + [2 * size]
    start = random.choice(starts)
    for _ in range(random.randint(1, 10)):
        at = start + random.randrange(size)
        overwrite(data, min(at, len(data) - 1), telling_number(random, random.choice((1, 2, 4))))


def long_values(random, data):
    """Pages of long values: chains that end early or run in a circle."""
    starts = [start for start in pages_of(data, ROWS) if bytes(data[start + 4 : start + 8]) == b"LVAL"]
    if not starts:
        return row_ends(random, data)
    size = page_size(data)
    start = random.choice(starts)
    table = start + (8 if size == 2048 else 12)
    count = max(1, min(255, int.from_bytes(data[table : table + 2], "little")))
    row = random.randrange(count)
    begin = int.from_bytes(data[table + 2 + 2 * row : table + 4 + 2 * row], "little") & 0x1FFF
    target = random.choice(starts) // size << 8 | random.choice((0, row, random.randrange(256)))
    overwrite(data, min(start + begin, len(data) - 1), target.to_bytes(4, "little"))
    return None


def usage_maps(random, data):
    """Maps that name pages of others, of none, or too many."""
    size = page_size(data)
    starts = [start for start in pages_of(data, ROWS) if bytes(data[start + 4 : start + 8]) == bytes(4)]
    starts += [start for start in pages_of(data, USAGE_MAP) if data[start] == USAGE_MAP]
    if not starts:
        return single_bytes(random, data)
    start = random.choice(starts)
    for _ in range(random.randint(1, 5)):
        low = 4 if data[start] == USAGE_MAP else size - 400
        overwrite(data, start + random.randrange(low, size), random_bytes(random, random.randint(1, 40)))
    return None


def truncation(random, data):
    size = page_size(data)
    kept = random.choice((0, 1, random.randrange(200), random.randrange(len(data)), len(data) - 1,
                          random.randrange(len(data)) // size * size))
    del data[kept:]


def swapped_pages(random, data):
    size = page_size(data)
    for _ in range(random.randint(1, 3)):
        one, other = (random.choice(pages_of(data, ROWS, DEFINITION, LEAF, USAGE_MAP)) for _ in range(2))
        data[one : one + size], data[other : other + size] = data[other : other + size], data[one : one + size]


def copied_page(random, data):
    size = page_size(data)
    one, other = (random.choice(pages_of(data, ROWS, DEFINITION, USAGE_MAP)) for _ in range(2))
    data[one : one + size] = data[other : other + size]


def zeroed_page(random, data):
    size = page_size(data)
    for _ in range(random.randint(1, 3)):
        start = random.choice(pages_of(data, ROWS, DEFINITION, USAGE_MAP))
        data[start : start + size] = bytes(size)


def noise(random, data):
    """No Jet file at all."""
    data[:] = random.choice((random.randbytes(random.randrange(1, 20000)), b"SQLite format 3\0" + bytes(4080),
                             b"PK\x03\x04" + random.randbytes(500), "Ciao, sono un testo.\r\n".encode() * 50))


KINDS = (single_bytes, bits, run, file_header, page_header, slots, row_ends, definitions, catalogue, long_values,
         usage_maps, truncation, swapped_pages, copied_page, zeroed_page, noise)
