-- Kingbase only.
create function isnull(anycompatible, anycompatible) returns anycompatible
  language sql as 'select coalesce($1, $2)';
create function datediff(part text, a timestamp, b timestamp) returns numeric
  language sql as 'select boundaries(part, a, b)';
create function charindex(part text, whole text, start numeric default 1) returns numeric
  language sql as 'select place(part, whole, start)';
create aggregate listagg(text, text) (
  sfunc = string_agg_transfn, stype = internal, finalfunc = string_agg_finalfn);
