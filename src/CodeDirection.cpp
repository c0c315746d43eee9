// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "CodeDirection.h"

#include <QTextDocument>
#include <QTextOption>

void CodeDirection::apply(QQuickTextDocument *document) const
{
    if (!document) {
        return;
    }
    QTextDocument *text = document->textDocument();
    QTextOption option = text->defaultTextOption();
    // Any other direction is left alone, because a change lays the whole text out again.
    if (option.textDirection() == Qt::RightToLeft) {
        option.setTextDirection(Qt::LeftToRight);
        option.setAlignment(Qt::AlignLeft);
        text->setDefaultTextOption(option);
    }
}
