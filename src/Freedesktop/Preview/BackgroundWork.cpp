#include "Freedesktop/Preview/BackgroundWork.h"

#include <QPointer>

#include <mutex>
#include <utility>

namespace marrowick {

namespace {

/// So that one file that takes long does not keep the next from being loaded.
constexpr int threadCount = 4;
constexpr int patienceAtTheEnd = 3000;

}

/// The way back from the threads, which may outlive the receiver.
struct BackgroundWork::Mailbox {
    std::mutex mutex;
    QObject* receiver = nullptr;

    void post(std::function<void()> delivery)
    {
        std::scoped_lock const lock(mutex);
        if (receiver)
            QMetaObject::invokeMethod(receiver, std::move(delivery), Qt::QueuedConnection);
    }
};

BackgroundWork::BackgroundWork(std::shared_ptr<DeliveryGate> gate)
    : gate_(std::move(gate))
    , mailbox_(std::make_shared<Mailbox>())
    , threads_(std::make_unique<QThreadPool>())
{
    mailbox_->receiver = &receiver_;
    threads_->setMaxThreadCount(threadCount);
}

BackgroundWork::~BackgroundWork()
{
    {
        std::scoped_lock const lock(mailbox_->mutex);
        mailbox_->receiver = nullptr;
    }
    threads_->clear();
    if (!threads_->waitForDone(patienceAtTheEnd))
        static_cast<void>(threads_.release());
}

void BackgroundWork::run(std::function<Delivery()> work)
{
    auto deliver = [gate = gate_, isAlive = QPointer(&receiver_)](Delivery delivery) {
        gate->deliver([isAlive, delivery = std::move(delivery)] {
            if (isAlive)
                delivery();
        });
    };
    threads_->start([mailbox = mailbox_, deliver = std::move(deliver), work = std::move(work)] {
        mailbox->post([deliver, delivery = work()] { deliver(delivery); });
    });
}

}
