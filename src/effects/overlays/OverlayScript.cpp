#include "effects/overlays/OverlayScript.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "swf/SwfActions.h"

namespace quillet {

namespace {

// Clip properties by their index in GetProperty/SetProperty.
int PropertyIndex(const std::string& name) {
    static const std::map<std::string, int> kIndex = {
        {"_x", 0},      {"_y", 1},       {"_xscale", 2},  {"_yscale", 3},       {"_currentframe", 4},
        {"_alpha", 6},  {"_visible", 7}, {"_width", 8},   {"_height", 9},       {"_rotation", 10},
        {"_name", 13},
    };
    auto it = kIndex.find(name);
    if (it == kIndex.end()) throw std::logic_error("overlay script: unknown property " + name);
    return it->second;
}

bool ParseNumber(const std::string& word, double& value) {
    const char c = word[0];
    if (!((c >= '0' && c <= '9') || ((c == '-' || c == '.') && word.size() > 1))) return false;
    char* end = nullptr;
    value = std::strtod(word.c_str(), &end);
    return end && *end == '\0';
}

class Assembler {
public:
    SwfActionList Finish() {
        for (const Fixup& f : fixups_) {
            auto it = labels_.find(f.label);
            if (it == labels_.end()) throw std::logic_error("overlay script: no label " + f.label);
            const size_t from = f.index + 1, to = it->second;
            const long offset = to >= from ? static_cast<long>(out_.ByteSize(from, to))
                                           : -static_cast<long>(out_.ByteSize(to, from));
            SwfAction& branch = out_[f.index];
            if (auto* jump = dynamic_cast<ActionJump*>(&branch)) jump->offset = static_cast<int16_t>(offset);
            if (auto* test = dynamic_cast<ActionIf*>(&branch)) test->offset = static_cast<int16_t>(offset);
        }
        return std::move(out_);
    }

    void Statement(const std::vector<std::string>& words) {
        if (words.empty()) return;
        if (words.size() == 1 && words[0].size() > 1 && words[0].back() == ':') {
            labels_[words[0].substr(0, words[0].size() - 1)] = out_.size();
            return;
        }
        size_t assign = 0;
        while (assign < words.size() && words[assign] != ":=") ++assign;
        if (assign == words.size()) return Rpn(words, 0, words.size());
        if (assign == 0) throw std::logic_error("overlay script: nothing to assign to");
        const std::string& last = words[assign - 1];
        if (last[0] == '.') {
            if (assign == 1) PushString("");
            else Rpn(words, 0, assign - 1);
            out_.Emplace<ActionPush>().Integer(PropertyIndex(last.substr(1)));
            Rpn(words, assign + 1, words.size());
            out_.Emplace<ActionSetProperty>();
            return;
        }
        if (assign != 1) throw std::logic_error("overlay script: cannot assign to '" + last + "'");
        PushString(last);
        Rpn(words, assign + 1, words.size());
        out_.Emplace<ActionSetVariable>();
    }

private:
    struct Fixup {
        size_t index;
        std::string label;
    };

    void PushString(const std::string& s) { out_.Emplace<ActionPush>().String(s); }

    void Branch(std::unique_ptr<SwfAction> action, const std::string& label) {
        fixups_.push_back({out_.size(), label});
        out_.Add(std::move(action));
    }

    void MathCall(const char* method) {
        out_.Emplace<ActionPush>().Integer(1).String("Math");
        out_.Emplace<ActionGetVariable>();
        PushString(method);
        out_.Emplace<ActionCallMethod>();
    }

    void Rpn(const std::vector<std::string>& words, size_t from, size_t to) {
        for (size_t i = from; i < to; ++i) Word(words[i]);
    }

    void Word(const std::string& w) {
        double number = 0;
        if (ParseNumber(w, number)) {
            if (number == std::floor(number) && std::fabs(number) < 2e9)
                out_.Emplace<ActionPush>().Integer(static_cast<int32_t>(number));
            else
                out_.Emplace<ActionPush>().Double(number);
            return;
        }
        if (w.size() >= 2 && w.front() == '\'' && w.back() == '\'') return PushString(w.substr(1, w.size() - 2));
        if (w[0] == '.') {
            out_.Emplace<ActionPush>().Integer(PropertyIndex(w.substr(1)));
            out_.Emplace<ActionGetProperty>();
            return;
        }
        if (w.rfind("if:", 0) == 0) return Branch(std::make_unique<ActionIf>(), w.substr(3));
        if (w.rfind("ifnot:", 0) == 0) {
            out_.Emplace<ActionNot>();
            return Branch(std::make_unique<ActionIf>(), w.substr(6));
        }
        if (w.rfind("jump:", 0) == 0) return Branch(std::make_unique<ActionJump>(), w.substr(5));
        if (w == ">") {  // a > b is b < a (Greater is newer than SWF 5)
            out_.Emplace<ActionStackSwap>();
            out_.Emplace<ActionLess>();
            return;
        }
        if (w == "sin" || w == "cos") return MathCall(w.c_str());
        using Make = std::unique_ptr<SwfAction> (*)();
        static const std::map<std::string, Make> kSimple = {
            {"+", [] { return std::unique_ptr<SwfAction>(new ActionAdd); }},
            {"-", [] { return std::unique_ptr<SwfAction>(new ActionSubtract); }},
            {"*", [] { return std::unique_ptr<SwfAction>(new ActionMultiply); }},
            {"/", [] { return std::unique_ptr<SwfAction>(new ActionDivide); }},
            {"%", [] { return std::unique_ptr<SwfAction>(new ActionModulo); }},
            {"<", [] { return std::unique_ptr<SwfAction>(new ActionLess); }},
            {"==", [] { return std::unique_ptr<SwfAction>(new ActionEquals); }},
            {"!", [] { return std::unique_ptr<SwfAction>(new ActionNot); }},
            {"and", [] { return std::unique_ptr<SwfAction>(new ActionAnd); }},
            {"or", [] { return std::unique_ptr<SwfAction>(new ActionOr); }},
            {"&", [] { return std::unique_ptr<SwfAction>(new ActionStringAdd); }},
            {"streq", [] { return std::unique_ptr<SwfAction>(new ActionStringEquals); }},
            {"rand", [] { return std::unique_ptr<SwfAction>(new ActionRandomNumber); }},
            {"int", [] { return std::unique_ptr<SwfAction>(new ActionToInteger); }},
            {"eval", [] { return std::unique_ptr<SwfAction>(new ActionGetVariable); }},
            {"dup", [] { return std::unique_ptr<SwfAction>(new ActionPushDuplicate); }},
            {"swap", [] { return std::unique_ptr<SwfAction>(new ActionStackSwap); }},
            {"pop", [] { return std::unique_ptr<SwfAction>(new ActionPop); }},
            {"clone", [] { return std::unique_ptr<SwfAction>(new ActionCloneSprite); }},
            {"new", [] { return std::unique_ptr<SwfAction>(new ActionNewObject); }},
            {"callm", [] { return std::unique_ptr<SwfAction>(new ActionCallMethod); }},
            {"stop", [] { return std::unique_ptr<SwfAction>(new ActionStop); }},
            {"play", [] { return std::unique_ptr<SwfAction>(new ActionPlay); }},
        };
        if (auto it = kSimple.find(w); it != kSimple.end()) {
            out_.Add(it->second());
            return;
        }
        const char c = w[0];
        if (!((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'))
            throw std::logic_error("overlay script: unknown word " + w);
        PushString(w);
        out_.Emplace<ActionGetVariable>();
    }

    SwfActionList out_;
    std::map<std::string, size_t> labels_;
    std::vector<Fixup> fixups_;
};

}  // namespace

std::string ScriptNumber(double value) {
    char text[32];
    if (value == std::floor(value) && std::fabs(value) < 2e9) std::snprintf(text, sizeof text, "%.0f", value);
    else std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

SwfActionList AssembleOverlayScript(const std::string& program) {
    Assembler assembler;
    std::string statement;
    auto flush = [&] {
        // A '#' starts a comment to the end of the statement.
        statement = statement.substr(0, statement.find('#'));
        std::istringstream in(statement);
        std::vector<std::string> words;
        for (std::string w; in >> w;) words.push_back(w);
        assembler.Statement(words);
        statement.clear();
    };
    for (char c : program) {
        if (c == '\n' || c == ';') flush();
        else statement += c;
    }
    flush();
    return assembler.Finish();
}

}  // namespace quillet
