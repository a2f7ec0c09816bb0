#pragma once

#include "Freedesktop/Preview/PreviewContent.h"
#include "Platform/FileURL.h"

#include <QIcon>
#include <QWidget>

class QLabel;

namespace marrowick {

/// A large icon with what can be told of the item.
class CardView final : public QWidget {
public:
    explicit CardView(QWidget* parent);

    void show(FileURL const& url, FileFacts const& facts, QString const& note);

    /// All that is told, in lines.
    QString text() const;

protected:
    bool event(QEvent* event) override;

private:
    void showIcon();

    QString name_;
    QIcon fileIcon_;
    QLabel* icon_;
    QLabel* nameLabel_;
    QLabel* kind_;
    QLabel* details_;
    QLabel* note_;
};

}
