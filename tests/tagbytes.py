"""Makes ID3v2 tags of all versions byte by byte, and splits them into frames."""
import re
import struct


def size4(size):
    """Returns a synchsafe integer of four bytes."""
    return bytes(size >> shift & 0x7F for shift in (21, 14, 7, 0))


def number_of(field, bits=8):
    """Returns the integer in some bytes of a tag; a synchsafe one has seven bits in each."""
    return sum(byte << bits * n for n, byte in enumerate(reversed(field)))


def tag(version, *frames, flags=0, revision=0, padding=32, before=b"", body=None):
    """Returns a tag with the frames, or with the body instead; `before` is its extended header."""
    body = before + b"".join(frames) + bytes(padding) if body is None else body
    return b"ID3" + bytes([version, revision, flags]) + size4(len(body)) + body


def f2(name, payload):
    """Returns a frame of v2.2; f3 and f4 make those of v2.3 and v2.4."""
    return name.encode() + len(payload).to_bytes(3, "big") + payload


def f3(name, payload, flags=0):
    return name.encode() + struct.pack(">IH", len(payload), flags) + payload


def f4(name, payload, flags=0):
    return name.encode() + size4(len(payload)) + flags.to_bytes(2, "big") + payload


def unsynchronised(data):
    """Returns the data with a zero byte after each 0xFF that needs one."""
    return re.sub(rb"\xff(?=[\xe0-\xff\0]|$)", b"\xff\0", data)


def text(value, encoding=0):
    """Returns the content of a text frame; the encoding is the number that tags use."""
    coding = ("latin-1", "utf-16", "utf-16-be", "utf-8")[encoding]
    return bytes([encoding]) + value.encode(coding)


def audio_of(mp3):
    return mp3[10 + number_of(mp3[6:10], 7):]


def split(data):
    """Returns the version of a tag and the bytes of each frame; v2.4 sizes are rewritten as synchsafe integers."""
    version, at, end = data[3], 10, len(data) - len(audio_of(data))
    if data[5] & 0x40:
        at += number_of(data[10:14], 7) if version == 4 else 4 + number_of(data[10:14])
    frames = []
    while at + 10 <= end and data[at]:
        size = number_of(data[at + 4:at + 8], 7 if version == 4 else 8)
        written = size4(size) if version == 4 else data[at + 4:at + 8]
        frames.append(data[at:at + 4] + written + data[at + 8:at + 10 + size])
        at += 10 + size
    return version, frames
