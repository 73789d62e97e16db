#include "app/messagehandler.h"
#include "platform/logger.h"
#include "support/testmain.h"

#include <QThread>
#include <QVector>
#include <utility>

using tavero::LoggerSeverity;

class TestMessageHandler : public QObject {
    Q_OBJECT
    QVector<std::pair<LoggerSeverity, QString>> m_entries;

private slots:
    void init()
    {
        m_entries.clear();
        tavero::Logger::setSink([this](LoggerSeverity severity, const QString& text) {
            m_entries.append({severity, text});
        });
        qInstallMessageHandler(tavero::messageHandler);
    }
    void cleanup()
    {
        qInstallMessageHandler(nullptr);
        tavero::Logger::setSink({});
    }

    void eachWrittenTypeGivesOneEntryWithItsSeverity()
    {
        qDebug() << "debug lines go nowhere";
        qInfo("information %d", 1);
        qWarning("warning %d", 2);
        qCritical("critical %d", 3);
        QCOMPARE(m_entries.size(), 3);
        QCOMPARE(m_entries[0].first, LoggerSeverity::Information);
        QCOMPARE(m_entries[0].second, QString("information 1"));
        QCOMPARE(m_entries[1].first, LoggerSeverity::Warning);
        QCOMPARE(m_entries[1].second, QString("warning 2"));
        QCOMPARE(m_entries[2].first, LoggerSeverity::Error);
        QCOMPARE(m_entries[2].second, QString("critical 3"));
    }

    void messagesFromManyThreadsAreAllWritten()
    {
        // The sink appends to an unguarded vector: the logger's own lock must serialise writers.
        QVector<QThread*> threads;
        for (int t = 0; t < 4; ++t) {
            threads << QThread::create([] {
                for (int i = 0; i < 250; ++i)
                    qWarning("from a worker");
            });
            threads.last()->start();
        }
        for (QThread* thread : threads) {
            thread->wait();
            delete thread;
        }
        QCOMPARE(m_entries.size(), 1000);
    }
};

TAVERO_TEST_GUILESS_MAIN(TestMessageHandler)
#include "tst_messagehandler.moc"
