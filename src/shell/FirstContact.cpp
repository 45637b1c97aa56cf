#include "shell/FirstContact.h"

#include <utility>

#include "tasks/StartReport.h"

namespace zth::shell {

platform::BoxAnswer AskAtStart(platform::BoxQuestion question, platform::Services& services) {
  using enum platform::BoxAnswer;
  if (question.buttons == platform::BoxButtons::Ok) {
    question.details = tasks::StartDetails(services);
    question.offers = {TryAgain};
    if (services.libraries.HasBoard(kSimulated)) question.offers.push_back(Simulated);
  }
  const platform::BoxAnswer answer = services.prompts.Ask(question);
  if (answer == TryAgain) throw StartOver{};
  if (answer == Simulated) throw StartOver{true};
  return answer;
}

}  // namespace zth::shell
