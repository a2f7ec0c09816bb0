#pragma once

#include "Freedesktop/Preview/BackgroundWork.h"
#include "Freedesktop/Preview/PreviewLoader.h"
#include "Platform/PreviewPanel.h"

#include <QTimer>
#include <QWidget>

#include <chrono>
#include <memory>
#include <optional>

class QAbstractScrollArea;
class QLabel;
class QStackedWidget;

namespace marrowick {

class CardView;
class ImageView;
class PdfView;
class TextView;

/// The preview of one item. It comes up once the item is loaded, or soon in any case, and says then that it is being loaded.
class PreviewWindow final : public QWidget, public PreviewPanel {
public:
    /// What is loaded in the background comes through `gate`. An item that takes longer than `patience` is given up.
    explicit PreviewWindow(
        std::shared_ptr<DeliveryGate> gate, std::chrono::milliseconds patience = std::chrono::seconds(30));
    ~PreviewWindow() override;

    void setDataSource(PreviewPanelDataSource* dataSource) override;
    void makeKeyAndOrderFront() override;
    void reloadData() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    struct Show;

    void load(FileURL const& url);
    void cancelLoading();
    void received(FileURL const& url, PreviewContent content);
    void showThatItLoads();
    void giveUp();
    void showItem(FileURL const& url, QString const& description);
    void showCard(FileURL const& url, FileFacts const& facts, QString const& note);
    /// The content's view in front, with a window that suits it.
    void present(QWidget& view, QSize wanted, QSize room);
    void bringToFront();
    bool handleKey(QKeyEvent const& event);

    PreviewPanelDataSource* dataSource_ = nullptr;
    std::string dateLocale_;
    BackgroundWork work_;
    QStackedWidget* views_;
    CardView* card_;
    ImageView* image_;
    TextView* text_;
    PdfView* pdf_;
    QLabel* note_;

    /// What is being loaded, if anything.
    std::optional<FileURL> loading_;
    std::shared_ptr<LoadLimit> limit_;
    /// Run out one after the other: until the window comes in any case, and until nothing more is expected.
    QTimer showing_;
    QTimer givingUp_;
    /// The window is to come to the front with what is shown next.
    bool isCalled_ = false;
};

}
