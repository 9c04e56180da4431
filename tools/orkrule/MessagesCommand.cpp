// `orkrule messages`: the message table as one JSON object, number to text.
#include "Commands.h"
#include "Text.h"

#include "OrkPlatform.h"

namespace ORKTOOL {
namespace {

constexpr std::int32_t kLastNumber = 0xFFFF;

ExitStatus Run() {
  Json texts = Json::object();
  for (std::int32_t number = 1; number <= kLastNumber; ++number) {
    const std::u16string text = ORKBASE::MessageText(number);
    if (!text.empty()) {
      texts.get_ref<Json::object_t&>().emplace_back(std::to_string(number), ToUtf8(text));
    }
  }
  Print(texts.dump(2) + "\n");
  return kDone;
}

}  // namespace

void AddMessagesCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("messages", "Print the message texts as JSON, number to text");
  AddLanguageOption(*command);
  command->footer("Example:\n  orkrule messages --language zh-CN");
  command->callback([&status] { status = Run(); });
}

}  // namespace ORKTOOL
