#include "app/messagehandler.h"
#include "platform/logger.h"
#include "support/testmain.h"

#include <QTemporaryFile>
#include <QThread>
#include <QVector>
#include <utility>
#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

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

    // With TAVERO_LOG_STDERR=1 every entry is mirrored to stderr (a file here).
    void eachWrittenTypeGivesOneEntryWithItsSeverity()
    {
        QTemporaryFile mirror;
        QVERIFY(mirror.open());
#ifdef Q_OS_UNIX
        const int savedStderr = ::dup(STDERR_FILENO);
        ::dup2(mirror.handle(), STDERR_FILENO);
        qputenv("TAVERO_LOG_STDERR", "1");
#endif
        qDebug() << "debug lines go nowhere";
        qInfo("information %d", 1);
        qWarning("warning %d", 2);
        qCritical("critical %d", 3);
#ifdef Q_OS_UNIX
        qunsetenv("TAVERO_LOG_STDERR");
        ::dup2(savedStderr, STDERR_FILENO);
        ::close(savedStderr);
#endif
        const QVector<std::pair<LoggerSeverity, QString>> expected{
            {LoggerSeverity::Information, "information 1"},
            {LoggerSeverity::Warning, "warning 2"},
            {LoggerSeverity::Error, "critical 3"}};
        QCOMPARE(m_entries, expected);
#ifdef Q_OS_UNIX
        QFile written(mirror.fileName()); // its own offset: the mirror's is at the end
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(written.readAll(), QByteArray("TAVERO[info]: information 1\n"
                                               "TAVERO[warning]: warning 2\n"
                                               "TAVERO[error]: critical 3\n"));
#endif
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
