#include <algorithm>

#include "QuillmarkKit/model/TagField.h"
#include "quillmark/Commands.h"

namespace quillmark {

using QuillmarkKit::TagField;
using QuillmarkKit::TagFields;

int commandFields(Console& console) {
  auto fields = QuillmarkKit::allTagFields;
  std::ranges::sort(fields, {}, QuillmarkKit::cliName);
  const auto nameLength = [](TagField field) { return cliName(field).size(); };
  const std::size_t width = nameLength(std::ranges::max(fields, {}, nameLength));

  console.write("Field names (use with --fields, or as flags for 'set'):\n\n");
  for (const TagField field : fields) {
    std::string name(cliName(field));
    name.resize(width, ' ');
    console.write(TagFields::albumIdentity.contains(field) ? "  * " : "    ");
    console.write(name + "  " + std::string(displayName(field)) + "\n");
  }
  console.write("\n  * included in the default paste (album identity)\n");
  return 0;
}

}  // namespace quillmark
