"""Checks that each folder includes only itself and the folders listed for it here."""
import pathlib
import re
import sys

ALLOWED = {
    "platform/base": [],
    "platform": ["platform/base"],
    "ID3TagEditor/model": ["platform", "platform/base"],
    "ID3TagEditor/parse": ["platform", "platform/base", "ID3TagEditor/model"],
    "ID3TagEditor/create": ["platform", "platform/base", "ID3TagEditor/model"],
    "ID3TagEditor": ["platform", "platform/base", "ID3TagEditor/model", "ID3TagEditor/parse", "ID3TagEditor/create"],
    "ID3v2": ["platform", "platform/base"],
    "QuillmarkKit/model": ["platform", "platform/base"],
    "QuillmarkKit/store/file": ["platform", "platform/base", "QuillmarkKit/model"],
    "QuillmarkKit/store/engine": ["platform", "platform/base", "QuillmarkKit/model", "QuillmarkKit/store/file", "ID3TagEditor", "ID3TagEditor/model",
                                  "ID3TagEditor/parse", "ID3v2"],
    "QuillmarkKit/store/standard": ["platform", "platform/base", "QuillmarkKit/model", "QuillmarkKit/store/file", "ID3v2"],
    "QuillmarkKit/store": ["platform", "platform/base", "QuillmarkKit/model", "QuillmarkKit/store/file", "QuillmarkKit/store/engine",
                           "QuillmarkKit/store/standard", "ID3TagEditor", "ID3TagEditor/model", "ID3v2"],
    "QuillmarkKit/transfer": ["platform", "platform/base", "QuillmarkKit/model", "QuillmarkKit/store"],
    "quillmark": ["platform", "platform/base", "QuillmarkKit/model", "QuillmarkKit/store", "QuillmarkKit/transfer"],
}

root = pathlib.Path(sys.argv[1])
wrong = []
for top in sorted({folder.split("/")[0] for folder in ALLOWED}):
    for source in [*(root / top).rglob("*.h"), *(root / top).rglob("*.cpp")]:
        folder = str(source.parent.relative_to(root))
        for included in re.findall(r'#include "([^"]+)"', source.read_text()):
            if str(pathlib.PurePath(included).parent) not in [folder, *ALLOWED.get(folder, [])] or folder not in ALLOWED:
                wrong.append(f"{source.relative_to(root)} includes {included}")
print("\n".join(wrong) or "Every include runs downwards.")
sys.exit(1 if wrong else 0)
