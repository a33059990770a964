#include "platform/linux/key_code_output.h"

#include <fmt/format.h>

#include "platform/linux/uinput_key_output.h"
#include "platform/linux/xtest_key_output.h"
#include "support/log.h"

namespace ostrelle {
namespace {

class UnavailableKeyOutput final : public KeyCodeOutput {
  public:
    explicit UnavailableKeyOutput(std::string reason) : reason_(std::move(reason)) {}

    std::optional<std::string> unavailableReason() override { return reason_; }
    void postKeyCode(std::uint16_t, bool) override {}

  private:
    std::string reason_;
};

}  // namespace

std::unique_ptr<KeyCodeOutput> openKeyCodeOutput(const EnvironmentLookup& environment,
                                                 const std::filesystem::path& uinput) {
    auto made = UinputKeyOutput::create(uinput);
    if (auto* output = std::get_if<std::unique_ptr<UinputKeyOutput>>(&made)) return std::move(*output);
    const std::string uinputReason = std::get<std::string>(made);

    std::string xReason(noDisplayVariableText);
    if (const auto display = environment("DISPLAY"); display && !display->empty()) {
        auto xtest = XTestKeyOutput::create(*display);
        if (auto* output = std::get_if<std::unique_ptr<XTestKeyOutput>>(&xtest)) {
            Log::warning(fmt::format("{} {}", uinputReason, throughXTestText));
            return std::move(*output);
        }
        xReason = std::get<std::string>(xtest);
    }
    std::string reason = fmt::format("{} {}", uinputReason, xReason);
    // A uinput failure other than permission or a missing node does not name the step by itself.
    if (uinputReason.find("scripts/install.sh") == std::string::npos)
        reason += fmt::format(" {}", installStepText);
    Log::error(reason);
    return std::make_unique<UnavailableKeyOutput>(std::move(reason));
}

}  // namespace ostrelle
