"""Naming rules of the catalogue: library names, symbolic constants, the
name hash and the synonym sort key.

Library names are derived from the EPSG names by one convention (see
docs/catalog.md):

  * characters are reduced to ASCII (accents dropped), apostrophes dropped;
  * a handful of EPSG abbreviations are written out (WGS 84 -> WGS 1984,
    ED50 -> European 1950, ...);
  * "+" glued to a word is written "Plus" (CH1903+ -> CH 1903 Plus);
  * an all-capitals acronym glued to a two-digit year gets the full year
    (NAD83 -> NAD 1983, GDA94 -> GDA 1994, RGAF09 -> RGAF 2009), and one
    glued to a four-digit year is split from it (NZGD2000 -> NZGD 2000);
    this applies to the acronyms that name geodetic or vertical systems
    and datums in EPSG (set by set_year_words), not to zone codes such as
    the CC42 of a projected system's name;
  * every other character that is not a letter or a digit separates words;
  * words written wholly in lower case get a capital initial (to -> To,
    zone -> Zone);
  * the words are joined by underscores.
"""

import re
import unicodedata

# Abbreviations written out before the general rules.  Built from the EPSG
# names themselves: the European datums are named by their region, the WGS
# realisations by their full year.
PHRASES = [
    (re.compile(r"\bWGS 84\b"), "WGS 1984"),
    (re.compile(r"\bWGS 72BE\b"), "WGS 1972 BE"),
    (re.compile(r"\bWGS 72\b"), "WGS 1972"),
    (re.compile(r"\bWGS 66\b"), "WGS 1966"),
    (re.compile(r"\bED50\b"), "European 1950"),
    (re.compile(r"\bED77\b"), "European 1977"),
    (re.compile(r"\bED79\b"), "European 1979"),
    (re.compile(r"\bED87\b"), "European 1987"),
]

# Acronym-and-number words that are not a datum and its year: the Swiss
# LV03 and LN02 refer to 1903 and 1902, the Swedish RH00 to 1900.
NOT_A_YEAR = {"LV03", "LN02", "RH00"}

# The acronym-and-year words to expand; set from the EPSG names.
_year_words = set()


def set_year_words(words):
    _year_words.clear()
    _year_words.update(w for w in words if ACRONYM_YEAR.match(w) and w not in NOT_A_YEAR)


def year_words_in(name):
    """The acronym-and-year words of an EPSG name."""
    return {w for w in WORD.findall(ascii_text(name)) if ACRONYM_YEAR.match(w)}

ACRONYM_YEAR = re.compile(r"^([A-Z]{2,})(\d{2}|\d{4})$")
WORD = re.compile(r"[A-Za-z0-9]+")


def ascii_text(text):
    """The text reduced to printable ASCII: accents dropped."""
    decomposed = unicodedata.normalize("NFKD", text)
    return "".join(c for c in decomposed if " " <= c <= "~")


def expand_year(word):
    m = ACRONYM_YEAR.match(word)
    if not m or word not in _year_words:
        return [word]
    letters, digits = m.groups()
    if len(digits) == 2:
        yy = int(digits)
        digits = ("20" if yy <= 25 else "19") + digits
    return [letters, digits]


def capitalise(word):
    if word.isalpha() and word.islower():
        return word[0].upper() + word[1:]
    return word


def library_words(epsg_name):
    text = ascii_text(epsg_name).replace("'", "")
    text = re.sub(r"(?<=[A-Za-z0-9])\+", " Plus", text)
    for pattern, replacement in PHRASES:
        text = pattern.sub(replacement, text)
    words = []
    for w in WORD.findall(text):
        words.extend(expand_year(w))
    return [capitalise(w) for w in words]


def library_name(epsg_name):
    """The library's spelling of an EPSG name."""
    return "_".join(library_words(epsg_name))


def cut_name(name, limit=79):
    """Keeps a name within `limit` characters, cutting at a word boundary."""
    if len(name) <= limit:
        return name
    cut = name[:limit]
    if "_" in cut[limit // 2:]:
        cut = cut[: cut.rindex("_")]
    return cut.rstrip("_")


def wkt1_datum_name(epsg_datum_name):
    """The datum spelling that open-source WKT1 writers use: the EPSG datum
    name without its 'ensemble' suffix, every run of other characters than
    letters and digits turned into one underscore; WGS 84 is abbreviated."""
    name = re.sub(r" ensemble$", "", epsg_datum_name)
    if name == "World Geodetic System 1984":
        return "WGS_1984"
    return re.sub(r"[^A-Za-z0-9]+", "_", ascii_text(name)).strip("_")


IGNORED = set(" \t\n\v\f\r()-/\\_")


def synonym_key(text):
    """The name key: the UTF-8 bytes without white space and ( ) - / \\ _,
    ASCII letters folded to lower case.  Names equal under the key are
    equal to name comparison; synonyms are sorted by it."""
    return bytes(b + 32 if 65 <= b <= 90 else b
                 for b in text.encode("utf-8") if chr(b) not in IGNORED)


def name_hash(name):
    """hash * 65599 + character over the name key, unsigned 32-bit."""
    h = 0
    for byte in synonym_key(name):
        h = (h * 65599 + byte) & 0xFFFFFFFF
    return h


def defstring(prefix, name, strip=None):
    """The symbolic constant of an object: prefix and the upper-cased name."""
    if strip and name.startswith(strip):
        name = name[len(strip):]
    body = re.sub(r"[^A-Za-z0-9]+", "_", name).strip("_").upper()
    return prefix + body
