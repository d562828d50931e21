// Which object shows which record: a host that gets a record twice gets the same object twice.
#pragma once

namespace com
{

// Faces are known by the address of their record, for as long as they live. `face` is the object's own interface.
void RememberFace(const void *record, void *face);
void ForgetFace(const void *record) noexcept;

// The face of a record, or null.
void *FindFace(const void *record);

} // namespace com
