/* Which keys of the remote control reach a key of a pad: a plan made from the images that the TA received. */
#ifndef VAULTPAD_TESTS_INTEGRATION_PAD_WALK_H
#define VAULTPAD_TESTS_INTEGRATION_PAD_WALK_H

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "pad/pad.h"

/*
 * Follows the focus of a pad as the trusted application moves it, by its own rules for focus and pages. Nothing is
 * known of any layout.
 */
class PadWalk {
public:
    /* store: the trusted application's image store. orientation: a VaultPadTaOrientation. */
    PadWalk(const std::filesystem::path& store, bool digitsOnly, std::uint32_t orientation);

    /* Goes back to the pad as it opens. */
    void restart();

    /*
     * The presses that bring the focus onto the key and press it, in the form of Client::pressAll(); the walk stands
     * there afterwards. Nothing when no way leads there.
     */
    std::optional<std::string> press(std::size_t key);

    const std::vector<vaultpad::secureworld::PadKey>& keys() const { return pad_->keys(); }
    const vaultpad::secureworld::Pad& pad() const { return *pad_; }

private:
    struct State {
        std::string page;
        std::size_t key;
    };
    struct Step {
        std::string press;
        State next;
    };

    std::vector<Step> stepsFrom(const State& state) const;
    State afterPress(const State& state) const;

    std::optional<vaultpad::secureworld::Pad> pad_;
    State state_;
};

#endif
