#include "app/ListEditorParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillet::app {

ListEditorParts AddListEditorParts(QWidget* owner, QVBoxLayout* box, int listHeight,
                                   std::span<const ListEditorButton> buttons) {
    ListEditorParts parts;
    parts.list = new QListWidget(owner);
    parts.list->setMaximumHeight(listHeight);
    box->addWidget(parts.list);
    auto* row = new QHBoxLayout;
    for (const auto& [label, action] : buttons) {
        auto* button = new QPushButton(label, owner);
        QObject::connect(button, &QPushButton::clicked, owner, action);
        row->addWidget(button);
    }
    if (buttons.size() < 4) row->addStretch();
    box->addLayout(row);
    parts.note = new QLabel(owner);
    parts.note->setWordWrap(true);
    box->addWidget(parts.note);
    parts.fields = new QWidget(owner);
    parts.fieldsLayout = new QVBoxLayout(parts.fields);
    parts.fieldsLayout->setContentsMargins(0, 0, 0, 0);
    box->addWidget(parts.fields);
    return parts;
}

}  // namespace quillet::app
