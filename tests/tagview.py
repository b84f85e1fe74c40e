"""The contents of tags as mutagen, an independent reader, finds them."""
import hashlib
import re

from mutagen.id3 import ID3, ID3NoHeaderError

# The frame in which mutagen keeps each field; it shows tags of all versions as v2.4.
FIELDS = {"TIT2": "title", "TPE1": "artist", "TALB": "album", "TPE2": "album-artist", "TCOM": "composer",
          "TPE3": "conductor", "TIT1": "grouping", "TPUB": "publisher", "TCOP": "copyright", "TEXT": "lyricist",
          "TIT3": "subtitle", "TENC": "encoded-by", "TKEY": "initial-key", "TOWN": "file-owner", "TCON": "genre",
          "COMM": "comment", "USLT": "lyrics", "TDRC": "year", "TBPM": "bpm", "TRCK": "track-number",
          "TPOS": "disc-number", "APIC": "artwork"}


def language(frame):
    """Returns the language code; one for an unknown language counts as "eng", which is written instead."""
    return "eng" if frame.lang in ("XXX", "und", "\0\0\0") else frame.lang.lower()


def content_of(frame):
    """Returns the content of a frame, independent of its text encoding."""
    name = frame.FrameID
    if name == "TCON":
        return tuple(frame.genres)
    if name == "APIC":
        mime = frame.mime if "/" in frame.mime or frame.mime == "-->" else "image/" + frame.mime.lower()
        return mime.replace("/jpg", "/jpeg"), int(frame.type), frame.desc.strip(), hashlib.md5(frame.data).hexdigest()
    if name in ("COMM", "USLT"):
        return frame.desc.strip(), str(frame).strip("\0"), language(frame)
    if name in ("CHAP", "CTOC"):
        own = {key: value for key, value in vars(frame).items() if key != "sub_frames" and key[0] != "_"}
        return repr(own), {key: content_of(inner) for key, inner in frame.sub_frames.items()}
    if name[0] == "T" and name not in ("TXXX", "TIPL", "TMCL"):
        return tuple(str(value).strip() for value in frame.text if str(value).strip("\0 "))
    return re.sub(r"encoding=<Encoding[^>]*>|, ?\)", "", repr(frame))


def view(path):
    """Returns the contents of all frames that mutagen finds in the file, by their keys."""
    is_old_tag = path.read_bytes()[:3] != b"ID3"
    try:
        tags = ID3(path, load_v1=is_old_tag)
    except ID3NoHeaderError:
        return {}
    seen = {key: content_of(frame) for key, frame in tags.items() if key != "COMM:ID3v1 Comment:eng"}
    if is_old_tag:
        seen["COMM::eng"] = "", str(tags["COMM:ID3v1 Comment:eng"]), "eng"
    seen.update((f"unread {data[:4].decode('latin-1')}", data[10:]) for data in tags.unknown_frames)
    return {key: value for key, value in seen.items() if value != ()}


def values_of(seen):
    """Returns the values of a view as a set of (frame, value), the same for equivalent spellings."""
    def plain(name, value):
        if name == "TCON":
            return tuple(sorted(re.sub("[ -]", "", genre.replace("&", "and")).lower() for genre in value))
        if name in ("TRCK", "TPOS"):
            return tuple(re.sub(r"^(?=/)", "0", re.sub(r"\b0+(?=\d)", "", position)) for position in value)
        return repr(value)
    return {(key.split(":")[0], plain(key[:4], value)) for key, value in seen.items()}


def others(seen):
    """Returns the part of a view that belongs to no field."""
    return {key: value for key, value in seen.items() if key[:4] not in FIELDS}
