// The frame shared by the panels' list editors (captions, sounds): a short
// list, a row of buttons under it, a note for when nothing can be edited, and
// the fields of the chosen entry, hidden while none is chosen.
#pragma once

#include <QString>
#include <functional>
#include <span>
#include <utility>

class QLabel;
class QListWidget;
class QVBoxLayout;
class QWidget;

namespace quillet::app {

struct ListEditorParts {
    QListWidget* list = nullptr;
    QLabel* note = nullptr;
    QWidget* fields = nullptr;         // the chosen entry's fields go in here
    QVBoxLayout* fieldsLayout = nullptr;
};

using ListEditorButton = std::pair<QString, std::function<void()>>;

// Adds the parts to `box` of `owner`, the list `listHeight` pixels high at
// most; the fields widget is added last, so callers fill it afterwards.
ListEditorParts AddListEditorParts(QWidget* owner, QVBoxLayout* box, int listHeight,
                                   std::span<const ListEditorButton> buttons);

}  // namespace quillet::app
