#include <algorithm>

#include "QuillmarkKit/model/TagField.h"
#include "quillmark/Commands.h"

namespace quillmark {

using QuillmarkKit::TagField;
using QuillmarkKit::TagFields;

int commandFields(Words, StandardOutput& output) {
  auto fields = QuillmarkKit::allTagFields;
  std::ranges::sort(fields, {}, QuillmarkKit::cliName);
  const auto nameLength = [](TagField field) { return cliName(field).size(); };
  const std::size_t width = nameLength(std::ranges::max(fields, {}, nameLength));

  output.write("Field names (use with --fields, or as flags for 'set'):\n\n");
  for (const TagField field : fields) {
    std::string name(cliName(field));
    name.resize(width, ' ');
    output.write(TagFields::albumIdentity.contains(field) ? "  * " : "    ");
    output.write(name + "  " + std::string(displayName(field)) + "\n");
  }
  output.write("\n  * included in the default paste (album identity)\n");
  return 0;
}

}  // namespace quillmark
