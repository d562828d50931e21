// Which object shows which record: a host that gets a record twice gets the same object twice.
#pragma once

namespace com
{

// Objects are known by the address of their record, for as long as they live. `object` is the object's own interface.
void RememberObject(const void *record, void *object);
void ForgetObject(const void *record) noexcept;

// The object of a record, or null.
void *FindObject(const void *record);

} // namespace com
