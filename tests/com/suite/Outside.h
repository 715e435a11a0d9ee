#pragma once

namespace suite {

/// In a program that knows nothing of the script, tests tell it by files: where the environment variable
/// VEX_SUITE names one, its lines are taken up before the next call of a component, and the file goes. What
/// is called is written behind the file's name and ".log". In the tests' own program nothing of this happens.
///
///     long|bool|text MEMBER VALUE    what a member gives from now on
///     raise MEMBER WORDS             a member raises once; without words, by the bare result code
///     lack MEMBER                    a member is not there, once
///     light COUNT                    that many lighting events come from GetEvent
///     hangup COMPONENT               whoever listens is let go
///     press NAME                     the event of an input
void ListenOutside();
/// Hands on what has been called.
void TellOutside();

}  // namespace suite
