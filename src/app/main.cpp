// SPDX-License-Identifier: Apache-2.0
#include "app/Commands.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    return orvale::runWindow(application.arguments().mid(1));
}
