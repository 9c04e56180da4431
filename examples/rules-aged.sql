-- What years have done to the store of rules.sql, run when its documents and SQL are there.

-- The limit was raised in the expression, and nobody made the document anew.
update rules set document = (select document from rules where id = 2) where id = 3;
-- A text was put where a document belongs.
update rules set document = 'see the old system' where id = 17;
-- The document was lost.
update rules set document = null where id = 21;
-- Somebody mended the SQL by hand.
update rules set sql_oracle = replace(sql_oracle, 'nvl(Orders.Qty,0)', 'Orders.Qty') where id = 15;
