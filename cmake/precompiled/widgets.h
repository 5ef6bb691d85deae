#pragma once

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QStringList>
#include <QTimer>
#include <QVBoxLayout>
#include <QVariantAnimation>

#include "standard.h"
