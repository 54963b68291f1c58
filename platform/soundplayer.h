// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QObject>
#include <QString>
#include <QtPlugin>

/// Plays sound files by the sound system, which may block the thread that uses it.
///
/// The implementation is in the module "trolleo-sound", because the libraries of the sound system
/// would take a tenth of the start of the program, and most starts ring no alarm.
class SoundPlayer : public QObject
{
public:
    /// Plays `file`, a path, `count` times. Stops what is playing.
    virtual void play(const QString &file, int count) = 0;
    virtual void stop() = 0;
};

/// The interface of the module.
class SoundPlayerFactory
{
public:
    SoundPlayerFactory() = default;
    SoundPlayerFactory(const SoundPlayerFactory &) = delete;
    SoundPlayerFactory &operator=(const SoundPlayerFactory &) = delete;
    virtual ~SoundPlayerFactory() = default;

    /// Creates a player for the calling thread.
    virtual std::unique_ptr<SoundPlayer> create() = 0;
};

// The number changes with these classes, so that a module of another version is not loaded.
#define SoundPlayerFactory_iid "trolleo.SoundPlayerFactory/1"
Q_DECLARE_INTERFACE(SoundPlayerFactory, SoundPlayerFactory_iid)
