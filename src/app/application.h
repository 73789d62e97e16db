#pragma once

#include <QApplication>

// The application object: carries the build's identity (build date, integer version, name,
// version text and window icon).
class Application : public QApplication {
public:
    Application(int& argc, char** argv);
    ~Application() override;
};
