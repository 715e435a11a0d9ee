#pragma once

#include <windows.h>
//
#include <oleauto.h>

// The components made for the tests stand in a library of their own, as the suite's do, and know nothing of
// the program. A test in the same process tells them what to do and reads what was asked of them.

/// How a component passes its events.
enum SuiteEvents {
  EventsDeclared = 0,    ///< it names its default source interface
  EventsEnumerated = 1,  ///< it does not; another connection point stands before the right one
  EventsNone = 2,        ///< it has no connection points
  EventsRefused = 3,     ///< it has one, and takes nobody
};

extern "C" {

/// Lines of what was called since the last time, "Component.Member(TYPE:value, ...)", each ended by "\n".
const char* SuiteTakeCalls();
/// Forgets all that a test has told.
void SuiteReset();
/// Objects of the components that somebody still holds.
long SuiteObjects();

/// What a member gives from now on, "Component.Member"; a copy is kept.
void SuiteReturn(const char* member, const VARIANT* value);
/// The same for the next call only; several are given in their order.
void SuiteReturnNext(const char* member, const VARIANT* value);
/// A member raises: with a record of these contents, filled in late or at once, or, without a description, by
/// the bare result code.
void SuiteRaise(const char* member, HRESULT code, WORD number, const wchar_t* source,
                const wchar_t* description, BOOL late);
/// A component's member is called otherwise, or, with null, is not there.
void SuiteRename(const char* member, const char* name);
/// A member is known by name but cannot be called.
void SuiteDeaf(const char* member);
/// Bytes by reference are moved by so much in every call.
void SuiteMovePorts(int delta);

/// The component is a control, made to sit on a form.
void SuiteMakeControl(const char* component);
void SuitePassEvents(const char* component, SuiteEvents how);
/// Raises an event on every object of a component: its arguments in their order. Gives the result code of the
/// last call, S_FALSE when nobody listens.
HRESULT SuiteFire(const char* component, DISPID number, VARIANT* arguments, UINT count);
/// The component lets go of whoever listens.
void SuiteHangUp(const char* component);

}  // extern "C"
