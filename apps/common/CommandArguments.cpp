#include "CommandArguments.h"

namespace quarry::apps {

QStringList commandArguments(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

} // namespace quarry::apps
