-- openGauss only.
create function fDateDiff(part text, a timestamp, b timestamp) returns numeric
  language sql as 'select boundaries(part, a, b)';
create function fCHARINDEX(part text, whole text, start numeric default 1) returns numeric
  language sql as 'select place(part, whole, start)';
