/* A whole session of a client, from its first call to its last, in every form there is. */
#ifndef VAULTPAD_TESTS_FAULTS_WHOLE_SESSION_H
#define VAULTPAD_TESTS_FAULTS_WHOLE_SESSION_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "application-fixture.h"

namespace vaultpad::test {

constexpr const char* kTypedText = "open sesame, please!";

struct SessionKind : Named {
    bool plainFamily;
    bool keyboard; /* and then in portrait, so that images are turned */
    bool speaks;
};

/* Both families, both pads, with and without the voice guide. */
std::vector<SessionKind> sessionKinds();

/* What one call of the client brought. */
struct StepOutcome {
    std::string step;
    int result = 0;
    std::string detail;       /* what the call hands out */
    Strings errors;           /* logged meanwhile */
    bool outOfMemory = false; /* left by std::bad_alloc */
};
using Outcome = std::vector<StepOutcome>;

bool operator==(const StepOutcome& one, const StepOutcome& other);
std::ostream& operator<<(std::ostream& out, const StepOutcome& step);

/* A television on which every kind of session runs through. */
class WholeSessionTest : public ApplicationTest {
protected:
    WholeSessionTest();
    ~WholeSessionTest() override;

    /*
     * Runs the client's calls in order. prepare is called on the fresh television before the first. The journal and the
     * log stay for looking at.
     */
    Outcome run(const SessionKind& kind, const std::function<void()>& prepare = nullptr);

    /* Whether a voice maker's start is followed by clips. True at the start of each run. */
    bool hasVoiceMaker = true;

    /* Closes what a failed close has left open, with everything working. */
    void closeWhatIsLeft();

    /* The step in progress at each call of the journal. */
    const Strings& stepOfCall() const { return stepOfCall_; }

private:
    void freshTelevision(const SessionKind& kind);
    Strings stepOfCall_;
};

}  // namespace vaultpad::test

#endif
