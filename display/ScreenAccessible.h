#pragma once

#include <QAccessibleWidget>

class LCD7100;

/// A screen as assistive technology sees it: its description is what it shows, put together when
/// somebody asks. Updates of the screen cost nothing, and are not announced: an instrument may send
/// a hundred in a second. GUI thread.
class ScreenAccessible : public QAccessibleWidget {
public:
    explicit ScreenAccessible(LCD7100* screen);

    /// The factory for QAccessible::installFactory(); nothing for other classes than LCD7100.
    static QAccessibleInterface* create(const QString& className, QObject* object);

    QString text(QAccessible::Text kind) const override;
};
