// The options shared by "Spin In" and "Spin Out": how many turns the slide
// makes while it grows in (or shrinks away), and which way it turns.
#pragma once

#include "effects/transitions/OptionKit.h"

namespace quillet {

class SpinTransition : public Transition {
public:
    static constexpr float kDefaultSpins = 1.8f;
    // The spin controls have fixed ids of their own.
    static constexpr int kSpinsLabelId = 10020;
    static constexpr int kSpinsFieldId = 10021;
    static constexpr int kCounterClockwiseId = 10022;

    float spins = kDefaultSpins;  // `spins`, whole and part turns
    bool clockwise = true;        // `clockwise`

    void CopyFrom(const Transition& source) override;
    void ResetOptions() override;
    void ReadOptions(const XmlNode& element) override;
    void WriteOptions(XmlWriter& writer) const override;
    // "Spins:" with a two-decimal field, and the "Counter-Clockwise" box,
    // whose value is the negation of `clockwise`.
    std::vector<TransitionOption> Options() const override;
    double OptionValue(size_t index) const override;
    bool SetOptionValue(size_t index, double value) override;

protected:
    explicit SpinTransition(std::string name);
};

}  // namespace quillet
