#include "Freedesktop/Interface/FolderChooser.h"

#include "Freedesktop/Interface/Conversions.h"

#include <QFile>
#include <QFileDialog>

#include <utility>

namespace marrowick {

FolderChooser::FolderChooser(std::shared_ptr<DeliveryGate> gate)
    : gate_(std::move(gate))
{
}

FolderChooser::~FolderChooser()
{
    if (dialog_) {
        dialog_->disconnect();
        delete dialog_.data();
    }
}

void FolderChooser::choose(FileURL const& startingIn, Done done)
{
    auto const answer = [this, gate = gate_, done = std::move(done)](std::optional<FileURL> folder) {
        QMetaObject::invokeMethod(
            &context_, [gate, done, folder = std::move(folder)] { gate->deliver([done, folder] { done(folder); }); },
            Qt::QueuedConnection);
    };
    if (dialog_) {
        dialog_->raise();
        dialog_->activateWindow();
        answer(std::nullopt);
        return;
    }
    auto* const dialog
        = new QFileDialog(nullptr, QFileDialog::tr("Choose a Folder"), QFile::decodeName(pathBytes(startingIn)));
    dialog_ = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setModal(false);
    QObject::connect(dialog, &QFileDialog::finished, dialog, [dialog, answer](int result) {
        auto const chosen = dialog->selectedFiles();
        bool const isChosen = result == QDialog::Accepted && !chosen.isEmpty();
        answer(isChosen ? std::optional(fileURLFrom(QFile::encodeName(chosen.front()))) : std::nullopt);
    });
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

}
