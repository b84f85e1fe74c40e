"""Checks that each folder includes only itself, platform/, platform/base/, and the folders in its row of ALLOWED."""
import pathlib
import re
import sys

EVERYWHERE = ["platform", "platform/base"]
STORE = ["QuillmarkKit/model", "QuillmarkKit/store/file"]
ALLOWED = {
    "platform/base": [],
    "platform": [],
    "platform/posix": [],
    "platform/linux": ["platform/posix"],
    "platform/macos": ["platform/posix"],
    "ID3TagEditor/model": [],
    "ID3TagEditor/parse": ["ID3TagEditor/model"],
    "ID3TagEditor/create": ["ID3TagEditor/model"],
    "ID3TagEditor": ["ID3TagEditor/model", "ID3TagEditor/parse", "ID3TagEditor/create"],
    "ID3v2": [],
    "QuillmarkKit/model": [],
    "QuillmarkKit/store/file": ["QuillmarkKit/model", "ID3TagEditor/model"],
    "QuillmarkKit/store/engine": [*STORE, "ID3TagEditor", "ID3TagEditor/model", "ID3TagEditor/parse", "ID3v2"],
    "QuillmarkKit/store/standard": [*STORE, "ID3v2"],
    "QuillmarkKit/store": [*STORE, "QuillmarkKit/store/engine", "QuillmarkKit/store/standard", "ID3TagEditor",
                           "ID3TagEditor/model", "ID3v2"],
    "QuillmarkKit/transfer": ["QuillmarkKit/model", "QuillmarkKit/store"],
    "quillmark": ["QuillmarkKit/model", "QuillmarkKit/store", "QuillmarkKit/transfer"],
}

root = pathlib.Path(sys.argv[1])
wrong = []
for top in sorted({folder.split("/")[0] for folder in ALLOWED}):
    for source in [*(root / top).rglob("*.h"), *(root / top).rglob("*.cpp")]:
        folder = str(source.parent.relative_to(root))
        everywhere = [] if folder == "platform/base" else EVERYWHERE
        for included in re.findall(r'#include "([^"]+)"', source.read_text()):
            allowed = [folder, *everywhere, *ALLOWED.get(folder, [])]
            if str(pathlib.PurePath(included).parent) not in allowed or folder not in ALLOWED:
                wrong.append(f"{source.relative_to(root)} includes {included}")
print("\n".join(wrong) or "Every include runs downwards.")
sys.exit(1 if wrong else 0)
